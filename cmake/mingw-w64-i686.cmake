# Cross-compiles for 32-bit Windows with mingw-w64: nothing is installed of that, it shows that the sources hold there.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
# The "posix" variant: the other one has no std::recursive_mutex.
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Entries of libraries are stdcall, whose names bear their arguments' size; the .def files name them without it.
set(CMAKE_MODULE_LINKER_FLAGS_INIT -Wl,--enable-stdcall-fixup)

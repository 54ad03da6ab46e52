# GTest::gmock and GTest::gtest_main: the package's, or, for another system, built from the package's sources.
if(CMAKE_CROSSCOMPILING)
  set(gtest_disable_pthreads ON CACHE BOOL "Use the system's threads" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(target gtest gtest_main gmock)
    target_compile_options(${target} PRIVATE -O0) # as the tests: compiled more often than it runs
  endforeach()
else()
  find_package(GTest REQUIRED)
endif()

# CLI11::CLI11, headers only: the package's, or, for another system, the same headers in a folder of their own, since
# the rest of /usr/include is not meant for it.
include_guard(GLOBAL)
if(CMAKE_CROSSCOMPILING)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/cli11)
  file(CREATE_LINK /usr/include/CLI ${CMAKE_BINARY_DIR}/cli11/CLI SYMBOLIC)
  add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
  target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/cli11)
else()
  find_package(CLI11 REQUIRED)
  set_target_properties(CLI11::CLI11 PROPERTIES IMPORTED_GLOBAL TRUE)
endif()

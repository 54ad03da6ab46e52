# The processors for which rooms have SIMD kernels: the name of the folder beside the references, or empty. 32-bit x86
# is not among them, since its compilers take no SSE2 for granted.
set(SIMD_FAMILY "")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|amd64")
  set(SIMD_FAMILY x86)
endif()

# Where sources are joined the standard headers that most of them include are compiled once for the rooms of the folder
# that calls it and those below; the preset package compiles each source with what it includes itself.
macro(use_room_headers name)
  if(CMAKE_UNITY_BUILD)
    set(room_headers ${name})
    if(NOT TARGET ${room_headers})
      file(CONFIGURE OUTPUT RoomHeaders.cpp CONTENT "")
      add_library(${room_headers} STATIC EXCLUDE_FROM_ALL ${CMAKE_CURRENT_BINARY_DIR}/RoomHeaders.cpp)
      target_link_libraries(${room_headers} PRIVATE house)
      target_precompile_headers(${room_headers} PRIVATE <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable>
                                <cstdint> <filesystem> <functional> <memory> <mutex> <optional> <span> <string>
                                <string_view> <system_error> <thread> <utility> <vector> <windows.h>)
    endif()
  endif()
endmacro()

# One call per room: a static, position-independent library that others link by its name.
#   add_room(NAME sources... [DEPENDS targets...])
function(add_room name)
  cmake_parse_arguments(ROOM "" "" "DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ROOM_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PUBLIC house ${ROOM_DEPENDS})
  if(room_headers)
    target_precompile_headers(${name} REUSE_FROM ${room_headers})
  endif()
endfunction()

# For the folder that calls it and those below: what takes its time to compile and little of a run.
# The sanitizers' checks make an optimizing compiler take more than twice as long.
macro(compile_quickly)
  if(SCENEDETECT_SANITIZE)
    add_compile_options(-O0)
  else()
    add_compile_options($<$<CONFIG:Release>:-O1>)
  endif()
  use_room_headers(quick_room_headers)
endmacro()

# What all test programs share. What is tested is optimized and checked by every sanitizer; the tests themselves compile
# in half the time without, and in half of that when joined. Their bytes stay guarded against what is tested. The
# compiler goes by the last option of a kind: these have to come after those of the house.
add_library(test_checks INTERFACE)
if(SCENEDETECT_SANITIZE MATCHES undefined)
  target_compile_options(test_checks INTERFACE -fno-sanitize=undefined)
endif()
if(SCENEDETECT_SANITIZE MATCHES address)
  target_compile_options(test_checks INTERFACE -fno-sanitize-address-use-after-scope)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(test_checks INTERFACE "SHELL:--param asan-instrumentation-with-call-threshold=0")
  endif()
endif()

# Called after the target is linked to the house.
function(set_test_options name)
  target_compile_options(${name} PRIVATE -O0)
  target_link_libraries(${name} PRIVATE test_checks)
  # GNU's linker takes seconds for each program that has GoogleTest or a sanitizer in it.
  if(MINGW)
    # GCC can't choose another by name here.
    target_link_options(${name} PRIVATE -fno-use-linker-plugin -wrapper ${CMAKE_SOURCE_DIR}/cmake/link-by-lld.sh)
  else()
    target_link_options(${name} PRIVATE -fuse-ld=lld)
  endif()
endfunction()

# The headers that every test includes, compiled once. They belong to a program, as the compiler's options for programs
# differ from those for libraries.
function(add_test_headers)
  file(CONFIGURE OUTPUT TestHeaders.cpp CONTENT "int main() {}")
  add_executable(test_headers EXCLUDE_FROM_ALL ${CMAKE_CURRENT_BINARY_DIR}/TestHeaders.cpp)
  target_link_libraries(test_headers PRIVATE house GTest::gmock)
  target_precompile_headers(test_headers PRIVATE ${CMAKE_SOURCE_DIR}/tests/Testing.h)
  set_test_options(test_headers)
endfunction()

# For a program of tests, after it is linked to the house.
function(use_test_headers name)
  target_link_libraries(${name} PRIVATE GTest::gmock)
  target_precompile_headers(${name} REUSE_FROM test_headers)
  set_test_options(${name})
endfunction()

# A GoogleTest program, which is one test for CTest; the cases that it ran are told in cases/NAME.xml.
#   add_room_tests(NAME sources... [DEPENDS targets...] [THREADS filter] [COST seconds] [EACH_CASE])
# With EACH_CASE every case is a test for CTest: for those that start programs, which take their time. The thread
# sanitizer sees the cases that THREADS tells, as GoogleTest's --gtest_filter does. Tests that cost more start first.
function(add_room_tests name)
  cmake_parse_arguments(ROOM "EACH_CASE" "THREADS;COST" "DEPENDS" ${ARGN})
  add_executable(${name} ${ROOM_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE house ${ROOM_DEPENDS} GTest::gtest_main)
  use_test_headers(${name})
  set(filter "")
  if(ROOM_THREADS AND SCENEDETECT_SANITIZE STREQUAL "thread")
    set(filter "${ROOM_THREADS}")
  endif()
  if(ROOM_EACH_CASE)
    add_case_tests(${name} "${filter}")
    return()
  endif()
  add_program_test(${name} "${filter}")
  if(ROOM_COST)
    set_tests_properties(${name} PROPERTIES COST ${ROOM_COST})
  endif()
endfunction()

function(add_program_test name filter)
  if(filter)
    set(filter --gtest_filter=${filter})
  endif()
  add_test(NAME ${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
           COMMAND ${name} --gtest_brief=1 --gtest_output=xml:cases/${name}.xml ${filter})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

function(add_case_tests name filter)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES TEST_FILTER "${filter}"
                       PROPERTIES TIMEOUT 600 ${ARGN})
endfunction()

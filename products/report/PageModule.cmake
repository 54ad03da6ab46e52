# The rule as a module for the report's page, whatever system the program is for: ${rule_module}.
# Of the same sources as the rooms of the rule, compiled for a browser's machine by clang.
set(rule_module ${CMAKE_CURRENT_BINARY_DIR}/rule.wasm)
find_program(WASM_CXX NAMES clang++ clang++-14 REQUIRED NO_CMAKE_FIND_ROOT_PATH
             DOC "clang, which compiles the report's rule to WebAssembly (packages.txt has what it needs)")
set(rule_sources ${CMAKE_CURRENT_SOURCE_DIR}/wasm/PageRule.cpp)
foreach(room decision transitions rule)
  get_target_property(folder ${room} SOURCE_DIR)
  get_target_property(sources ${room} SOURCES)
  list(TRANSFORM sources PREPEND ${folder}/)
  list(APPEND rule_sources ${sources})
  file(GLOB headers CONFIGURE_DEPENDS ${folder}/*.h)
  list(APPEND rule_headers ${headers})
endforeach()
# As one source, in a third of the time.
list(TRANSFORM rule_sources REPLACE "(.+)" "#include \"\\1\"" OUTPUT_VARIABLE includes)
list(JOIN includes "\n" includes)
set(rule_source ${CMAKE_CURRENT_BINARY_DIR}/rule.cpp)
file(CONFIGURE OUTPUT ${rule_source} CONTENT "${includes}\n" @ONLY)
add_custom_command(OUTPUT ${rule_module}
                   COMMAND ${WASM_CXX} --target=wasm32-wasi -mexec-model=reactor -std=c++20 -O2 -fno-exceptions -fno-rtti
                           -Wall -Wextra -Werror -I ${CMAKE_SOURCE_DIR} -Wl,--strip-all ${rule_source} -o ${rule_module}
                   DEPENDS ${rule_sources} ${rule_headers}
                   COMMENT "Compiling the report's rule to WebAssembly"
                   VERBATIM)

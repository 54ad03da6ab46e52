# Libraries that are headers only: the package's target, or, for another system, one for the same headers in a folder of
# their own, since the rest of /usr/include is not meant for it.
#   find_headers(PACKAGE TARGET FOLDER): FOLDER is that below /usr/include
function(find_headers package target folder)
  if(TARGET ${target})
    return()
  endif()
  if(CMAKE_CROSSCOMPILING)
    set(place ${CMAKE_BINARY_DIR}/headers/${package})
    file(MAKE_DIRECTORY ${place})
    file(CREATE_LINK /usr/include/${folder} ${place}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${place})
  else()
    find_package(${package} REQUIRED)
    set_target_properties(${target} PROPERTIES IMPORTED_GLOBAL TRUE)
  endif()
endfunction()

# The headers for hosts, as they are installed: in ${CMAKE_BINARY_DIR}/include/scenedetect the control interfaces lie
# beside the one header that gives them what they need of the system. Off Windows that is put together from the
# headers that stand in for the system's; these are never installed, since their names belong to others.
set(public_headers ${CMAKE_BINARY_DIR}/include/scenedetect)
configure_file(${CMAKE_SOURCE_DIR}/scenes/IKxSceneDetect.h ${public_headers}/IKxSceneDetect.h COPYONLY)
if(WIN32)
  configure_file(${CMAKE_SOURCE_DIR}/platform/win32/KxPlatform.h ${public_headers}/KxPlatform.h COPYONLY)
else()
  # Each after those that it includes.
  set(parts windows.h strmif.h amvideo.h control.h dvdmedia.h evcode.h uuids.h vfwmsgs.h KxPlatform.h)
  set(text "// What the control interfaces, and pins that connect to the filter's, need of the system.\n#pragma once\n")
  foreach(part ${parts})
    set(path ${CMAKE_SOURCE_DIR}/platform/native/${part})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${path})
    file(READ ${path} part_text)
    string(REPLACE "#pragma once\n" "" part_text "${part_text}")
    foreach(included ${parts})
      string(REPLACE "#include <${included}>\n" "" part_text "${part_text}")
    endforeach()
    string(APPEND text "\n// ---------- ${part}\n${part_text}")
  endforeach()
  file(CONFIGURE OUTPUT ${public_headers}/KxPlatform.h CONTENT "${text}" @ONLY)
endif()
install(DIRECTORY ${public_headers} DESTINATION include)

# KxSceneDetect2.ax: exports by the .def file only, imports of the system's libraries only, and the same bytes from
# the same sources.

# The class table and the entries, for the module and for a program that has the filter inside.
add_library(module_classes OBJECT ClassTable.cpp Exports.cpp)
target_link_libraries(module_classes PUBLIC house filter baseclasses)

configure_file(KxSceneDetect2.rc.in KxSceneDetect2.rc @ONLY)
add_library(KxSceneDetect2 MODULE
  Registration_win32.cpp
  SceneDetectApp_win32.cpp
  KxSceneDetect2.def
  ${CMAKE_CURRENT_BINARY_DIR}/KxSceneDetect2.rc)
target_link_libraries(KxSceneDetect2 PRIVATE module_classes scenes baseclasses platform)
set_target_properties(KxSceneDetect2 PROPERTIES PREFIX "" SUFFIX .ax LINK_DEPENDS
                      ${CMAKE_CURRENT_SOURCE_DIR}/KxSceneDetect2.def)
target_link_options(KxSceneDetect2 PRIVATE -s -Wl,--no-insert-timestamp -Wl,--gc-sections)

add_library(KxSceneDetect2 SHARED ClassTable.cpp Exports.cpp)
target_link_libraries(KxSceneDetect2 PRIVATE filter baseclasses)
# The number of the binary interface (docs/hosting.md), which is not that of the release.
set_target_properties(KxSceneDetect2 PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0)
# For those who link the installed library.
target_include_directories(KxSceneDetect2 INTERFACE $<INSTALL_INTERFACE:include/scenedetect>)
target_compile_features(KxSceneDetect2 INTERFACE cxx_std_17)
# The version script decides what is let out, not the compiler.
set_target_properties(KxSceneDetect2 PROPERTIES CXX_VISIBILITY_PRESET default)
target_link_options(KxSceneDetect2 PRIVATE -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/KxSceneDetect2.map)
set_target_properties(KxSceneDetect2 PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/KxSceneDetect2.map)

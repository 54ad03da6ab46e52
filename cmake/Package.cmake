# What is installed, and the archive of it that CPack makes: on Windows a zip whose folder holds everything flat, on
# Debian a package (PackageDebian.cmake).
set(CPACK_PACKAGE_NAME TamrakSceneDetect)
set(CPACK_PACKAGE_FILE_NAME ${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(docs CHANGELOG.md docs/hosting.md docs/logging.md docs/deliberate-behaviour.md docs/library.md docs/tuning.md docs/transitions.md)
install(FILES library/kxscenes.h DESTINATION include)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  install(TARGETS KxSceneDetect2 DESTINATION .)
  install(TARGETS libkxscenes RUNTIME DESTINATION . ARCHIVE DESTINATION lib)
  install(FILES docs/installing-windows.md DESTINATION . RENAME INSTALL.md)
  # With the line ends that every editor there shows.
  configure_file(packaging/windows/FIRST-STEPS.txt FIRST-STEPS.txt @ONLY NEWLINE_STYLE WIN32)
  install(FILES ${CMAKE_BINARY_DIR}/FIRST-STEPS.txt LICENSE ${docs} docs/dv.md docs/outputs.md docs/tape-cuts.md
                docs/tape-log.md DESTINATION .)
else()
  set(CPACK_GENERATOR TGZ)
  install(TARGETS KxSceneDetect2 libkxscenes EXPORT TamrakSceneDetect)
  install(FILES ${CMAKE_BINARY_DIR}/library/kxscenes.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  set(doc_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/tamrak-scene-detect)
  # All that find_package needs: the library depends on no other package.
  set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/TamrakSceneDetect)
  install(EXPORT TamrakSceneDetect NAMESPACE TamrakSceneDetect:: FILE TamrakSceneDetectConfig.cmake
          DESTINATION ${package_folder})
  include(CMakePackageConfigHelpers)
  write_basic_package_version_file(TamrakSceneDetectConfigVersion.cmake COMPATIBILITY SameMajorVersion)
  install(FILES ${CMAKE_BINARY_DIR}/TamrakSceneDetectConfigVersion.cmake DESTINATION ${package_folder})
  install(FILES ${docs} docs/cluster.md docs/dv.md docs/gstreamer.md docs/installing.md docs/outputs.md
                docs/parts.md docs/python.md docs/tape-cuts.md docs/tape-log.md docs/ways-in.md
          DESTINATION ${doc_folder})
  install(FILES LICENSE DESTINATION ${doc_folder} RENAME copyright)
  install(DIRECTORY examples DESTINATION ${doc_folder})
  include(PackageDebian)
endif()
include(CPack)

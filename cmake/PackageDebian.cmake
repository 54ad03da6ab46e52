# The Debian package: cpack -G DEB, or cmake --workflow --preset package.
find_program(DPKG_DEB dpkg-deb)
if(NOT DPKG_DEB)
  return()
endif()
list(APPEND CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "Tamrak Scene Detect contributors <contributors@tamrak.invalid>")
set(CPACK_DEBIAN_PACKAGE_NAME tamrak-scene-detect)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "finds the scenes of video files and tape captures")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "\
kxscenes sends video files through a scene-detection filter and tells where
their scenes begin: at picture changes, for DV without decoding a picture, or
at jumps of the recording time that DV frames carry.
.
The filter itself is in a shared library with headers and a CMake package,
for programs that capture or import video, and its heart in another with a C
interface, for programs that have the frames already; a small logging library
shows what they see.")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS ffmpeg)
# What is linked says what is needed; the filter's library is found among what was built.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# What other packages that link it have to depend on, and what the loader has to be told; CPack's own way of the
# latter is an older one.
set(control ${CMAKE_BINARY_DIR}/debian)
file(CONFIGURE OUTPUT ${control}/shlibs
     CONTENT "libKxSceneDetect2 0 ${CPACK_DEBIAN_PACKAGE_NAME} (>= ${PROJECT_VERSION})
libkxscenes 0 ${CPACK_DEBIAN_PACKAGE_NAME} (>= ${PROJECT_VERSION})\n")
file(CONFIGURE OUTPUT ${control}/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${control}/shlibs ${control}/triggers)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/packaging/debian-files.cmake)

# A package beside it, of one component that the main package leaves out: cpack --config CPack-<component>.cmake.
#   add_debian_package(COMPONENT NAME SECTION DEPENDS SUGGESTS SUMMARY)
# DEPENDS come on top of what the libraries ask for.
function(add_debian_package component name section depends suggests summary)
  file(CONFIGURE OUTPUT CPack-${component}.cmake @ONLY CONTENT [[
include("@CMAKE_BINARY_DIR@/CPackConfig.cmake")
set(CPACK_INSTALL_CMAKE_PROJECTS "@CMAKE_BINARY_DIR@;@PROJECT_NAME@;@component@;/")
set(CPACK_PACKAGE_NAME @name@)
set(CPACK_DEBIAN_PACKAGE_NAME @name@)
set(CPACK_DEBIAN_PACKAGE_SECTION @section@)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "@depends@")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "@summary@")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "The pages of @CPACK_DEBIAN_PACKAGE_NAME@ describe it.")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "@suggests@")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "")
set(CPACK_PRE_BUILD_SCRIPTS "@CMAKE_SOURCE_DIR@/packaging/debian-component-files.cmake")
]])
endfunction()
if(SCENEDETECT_PYTHON)
  add_debian_package(python python3-kxscenes python
    "${CPACK_DEBIAN_PACKAGE_NAME} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), python3, python3-numpy"
    python3-distributed "scenes of video files, for Python")
endif()
if(SCENEDETECT_GSTREAMER)
  add_debian_package(gstreamer gstreamer1.0-kxscenes video "" "" "GStreamer element that tells where scenes begin")
endif()

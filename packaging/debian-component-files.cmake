# What a package beside the main one has besides its component; CPack runs this on the tree that it is about to pack.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
file(COPY_FILE ${CPACK_RESOURCE_FILE_LICENSE} ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/copyright)
file(MAKE_DIRECTORY ${root}/share/doc/${CPACK_DEBIAN_PACKAGE_NAME})
file(RENAME ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/copyright ${root}/share/doc/${CPACK_DEBIAN_PACKAGE_NAME}/copyright)
# The libraries are where the loader looks anyway.
file(GLOB_RECURSE binaries ${root}/lib/*.so)
foreach(binary ${binaries})
  file(RPATH_REMOVE FILE ${binary})
endforeach()

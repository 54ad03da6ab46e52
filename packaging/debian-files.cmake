# What a Debian package has and other archives have not; CPack runs this on the tree that it is about to pack.
if(NOT CPACK_GENERATOR STREQUAL DEB)
  return()
endif()
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
set(docs ${root}/share/doc/${CPACK_DEBIAN_PACKAGE_NAME})
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${docs}/changelog.Debian
"${CPACK_DEBIAN_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * Built by CPack; CHANGELOG.md tells what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
file(RENAME ${docs}/CHANGELOG.md ${docs}/changelog)
execute_process(COMMAND gzip -9n ${docs}/changelog.Debian ${docs}/changelog COMMAND_ERROR_IS_FATAL ANY)
# One package for all is meant, it was never one of Debian's, and CPack always writes the scripts.
file(WRITE ${root}/share/lintian/overrides/${CPACK_DEBIAN_PACKAGE_NAME}
"${CPACK_DEBIAN_PACKAGE_NAME}: initial-upload-closes-no-bugs
${CPACK_DEBIAN_PACKAGE_NAME}: link-to-shared-library-in-wrong-package
${CPACK_DEBIAN_PACKAGE_NAME}: maintscript-calls-ldconfig
${CPACK_DEBIAN_PACKAGE_NAME}: package-name-doesnt-match-sonames
")
# The package's folders are those that the loader knows.
file(GLOB binaries ${root}/bin/kxscenes ${root}/lib/*.so.*.* ${root}/lib/*/*.so.*.*)
foreach(binary ${binaries})
  file(RPATH_REMOVE FILE ${binary})
endforeach()

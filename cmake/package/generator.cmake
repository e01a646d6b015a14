# Read by CPack before it makes a package.
set(CPACK_PRE_BUILD_SCRIPTS "${CPACK_VQTM_SOURCES}/cmake/package/permissions.cmake")
if(CPACK_INSTALLED_DIRECTORIES)
  # The sources: only what is under version control, not the whole folder.
  set(CPACK_INSTALLED_DIRECTORIES "")
  set(CPACK_INSTALL_SCRIPTS "${CPACK_VQTM_SOURCES}/cmake/package/sources.cmake")
elseif(CPACK_GENERATOR STREQUAL "DEB")
  # A stage of /usr, so that files which depend on the prefix know it.
  set(CPACK_SET_DESTDIR ON)
  set(CPACK_INSTALL_PREFIX "/usr")
  # Each package's description has a summary of its own.
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
  list(PREPEND CPACK_PRE_BUILD_SCRIPTS "${CPACK_VQTM_SOURCES}/cmake/package/debian.cmake")
endif()

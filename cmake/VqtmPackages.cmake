# What CPack makes of an installed tree: Debian packages on 64-bit Debian, a zip for Windows, else a tar archive; and of the sources
# an archive. They are put into dist/, what they are made from stays in the build folder. The target `installed` builds what they have.
add_custom_target(installed)
get_property(libraries GLOBAL PROPERTY VQTM_LIBRARIES)
foreach(target IN ITEMS ${libraries} vqtype vqtype_man)
  if(TARGET ${target})
    add_dependencies(installed ${target})
  endif()
endforeach()

set(CPACK_PACKAGE_NAME vqtm)
set(CPACK_PACKAGE_VENDOR "the vqtm authors")
set(CPACK_PACKAGE_CONTACT "The vqtm authors <vqtm@lists.invalid>")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_OUTPUT_FILE_PREFIX "${PROJECT_SOURCE_DIR}/dist")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL Runtime Development)

find_program(VQTM_DPKG_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(VQTM_DPKG_SHLIBDEPS)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME win32)
elseif(CMAKE_SIZEOF_VOID_P EQUAL 8 AND VQTM_DPKG_SHLIBDEPS)
  set(CPACK_GENERATOR DEB)
elseif(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(CPACK_GENERATOR TGZ)
  set(CPACK_SYSTEM_NAME "linux-${CMAKE_SYSTEM_PROCESSOR}")
else()
  set(CPACK_GENERATOR TGZ)
  set(CPACK_SYSTEM_NAME linux-i386)
endif()

# Debian: the libraries with the workbench, which is of the same version always, and what programs are built with.
set(description "\
The type library of an object database keeps numbers, texts in many code sets
and languages, dates, identifiers and references behind a one-byte type number:
it creates, stores, loads, compares, hashes, prints and scans them.")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME vqtm)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION database)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/debian/triggers")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/lib")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "types of an object database: libraries and workbench
${description}

This package has the type library with its base and internationalisation
libraries, and the command-line workbench vqtype.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvqtm-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, gdb, pkg-config")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "types of an object database: development files
${description}

This package has the headers, the static libraries, what CMake and pkg-config
need to find them, example programs, views for debuggers and documents.")

# The archive of the sources has what is under version control.
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "vqtm-${PROJECT_VERSION}-source")
set(CPACK_SOURCE_STRIP_FILES OFF)

# What depends on the kind of package is set when it is made.
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/package/generator.cmake")
set(CPACK_VQTM_SOURCES "${PROJECT_SOURCE_DIR}")
include(CPack)

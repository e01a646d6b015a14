# What `cmake --install` puts in place: libraries, headers, the workbench, and the files by which others find them. `Runtime` is what
# programs need to run, `Development` what one needs beside it to build programs.
include(CMakePackageConfigHelpers)
get_property(libraries GLOBAL PROPERTY VQTM_LIBRARIES)
get_property(headers GLOBAL PROPERTY VQTM_HEADERS)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vqtm")

# The libraries find each other, and the workbench finds them, wherever the tree is put.
get_property(shared GLOBAL PROPERTY VQTM_SHARED_LIBRARIES)
set_target_properties(${shared} PROPERTIES INSTALL_RPATH "$ORIGIN")
if(TARGET vqtype)
  set_target_properties(vqtype PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

install(TARGETS ${libraries} EXPORT vqtmTargets
  RUNTIME COMPONENT Runtime
  LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
  ARCHIVE COMPONENT Development)
install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vqtm" COMPONENT Development)
if(TARGET vqtype)
  install(TARGETS vqtype RUNTIME COMPONENT Runtime)
  install(FILES examples/territories.csv DESTINATION "${CMAKE_INSTALL_DATADIR}/vqtm/examples" COMPONENT Runtime)
endif()
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Runtime)

# The examples are a project of their own there, and their data are beside them.
install(DIRECTORY examples/ DESTINATION "${CMAKE_INSTALL_DATADIR}/vqtm/examples" COMPONENT Development
  FILES_MATCHING PATTERN "CMakeLists.txt" PATTERN "*.c" PATTERN "*.cpp" PATTERN "*.h" PATTERN "*.txt")
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Development)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Development FILES_MATCHING PATTERN "*.md")

# find_package(vqtm)
install(EXPORT vqtmTargets NAMESPACE vq:: DESTINATION "${package_dir}" COMPONENT Development)
configure_package_config_file(cmake/vqtmConfig.cmake.in "${PROJECT_BINARY_DIR}/vqtmConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vqtmConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vqtmConfig.cmake" "${PROJECT_BINARY_DIR}/vqtmConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT Development)

# pkg-config vqtm. The prefix is found from the file's own place, so that an installed tree may be moved.
set(pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${pc_dir}" OUTPUT_VARIABLE pc_prefix)
configure_file(cmake/vqtm.pc.in "${PROJECT_BINARY_DIR}/vqtm.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vqtm.pc" DESTINATION "${pc_dir}" COMPONENT Development)

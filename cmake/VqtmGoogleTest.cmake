# GoogleTest from its packaged sources, so that every target has one built for it.
if(NOT EXISTS "${VQTM_GOOGLETEST}/CMakeLists.txt")
  message(FATAL_ERROR "GoogleTest's sources are not in ${VQTM_GOOGLETEST}: install the package googletest, or set VQTM_GOOGLETEST")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
add_subdirectory("${VQTM_GOOGLETEST}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

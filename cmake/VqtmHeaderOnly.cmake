# vqtm::cli: CLI11 and {fmt}, both taken as headers, so that they serve every target. They are reached by links in a folder of their
# own, because the host's whole include folder would hide the headers of another target.
add_library(vqtm_cli INTERFACE)
add_library(vqtm::cli ALIAS vqtm_cli)
foreach(library IN ITEMS CLI fmt)
  if(NOT IS_DIRECTORY "${VQTM_SYSTEM_INCLUDE}/${library}")
    message(FATAL_ERROR "${VQTM_SYSTEM_INCLUDE}/${library} is missing: install libcli11-dev and libfmt-dev, or set VQTM_SYSTEM_INCLUDE")
  endif()
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/headers")
  file(CREATE_LINK "${VQTM_SYSTEM_INCLUDE}/${library}" "${PROJECT_BINARY_DIR}/headers/${library}" SYMBOLIC)
endforeach()
target_include_directories(vqtm_cli SYSTEM INTERFACE "${PROJECT_BINARY_DIR}/headers")
target_compile_definitions(vqtm_cli INTERFACE FMT_HEADER_ONLY)

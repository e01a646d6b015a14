# Run by CPack: copies the sources into the stage of their archive. Outside of version control, as in an unpacked archive, everything is
# a source but what building makes.
set(sources "${CPACK_VQTM_SOURCES}")
execute_process(COMMAND git -C "${sources}" rev-parse --show-cdup
  OUTPUT_VARIABLE above RESULT_VARIABLE failed ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
if(failed OR NOT above STREQUAL "")
  file(GLOB_RECURSE files LIST_DIRECTORIES OFF RELATIVE "${sources}" "${sources}/*")
  list(FILTER files EXCLUDE REGEX "^(build|dist|\\.git|\\.cache|\\.vscode|\\.idea)/|^compile_commands\\.json$|\\.swp$|__pycache__/")
else()
  execute_process(COMMAND git -C "${sources}" -c core.quotepath=off ls-files
    OUTPUT_VARIABLE files COMMAND_ERROR_IS_FATAL ANY OUTPUT_STRIP_TRAILING_WHITESPACE)
  string(REPLACE "\n" ";" files "${files}")
endif()
foreach(file IN LISTS files)
  cmake_path(GET file PARENT_PATH folder)
  file(COPY "${sources}/${file}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}")
endforeach()

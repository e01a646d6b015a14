# Run by CPack: copies the sources into the stage of their archive. Where there is no version control, as in an unpacked archive,
# everything is a source but what building makes.
set(sources "${CPACK_VQTM_SOURCES}")
if(EXISTS "${sources}/.git")
  # Git refuses folders of another user's, of which it would run what is set there. Listing runs nothing.
  set(ENV{GIT_CONFIG_COUNT} 1)
  set(ENV{GIT_CONFIG_KEY_0} safe.directory)
  set(ENV{GIT_CONFIG_VALUE_0} "*")
  execute_process(COMMAND git -C "${sources}" -c core.quotepath=off -c core.fsmonitor=false ls-files
    OUTPUT_VARIABLE files ERROR_VARIABLE said RESULT_VARIABLE failed OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(failed)
    # Not the whole folder: nobody knows what else is in it.
    message(FATAL_ERROR "git does not tell what is under version control in ${sources}: ${failed}\n${said}")
  endif()
  string(REPLACE "\n" ";" files "${files}")
else()
  file(GLOB_RECURSE files LIST_DIRECTORIES OFF RELATIVE "${sources}" "${sources}/*")
  list(FILTER files EXCLUDE REGEX "^(build|dist|\\.git|\\.cache|\\.vscode|\\.idea)/|^compile_commands\\.json$|\\.swp$|__pycache__/")
endif()
foreach(file IN LISTS files)
  if(EXISTS "${sources}/${file}")  # else it is deleted, and that is not committed yet
    cmake_path(GET file PARENT_PATH folder)
    file(COPY "${sources}/${file}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}")
  endif()
endforeach()

# Run by CPack on the stage of any package, whatever the builder's umask: everybody may read, and run what is a program.
if(NOT CMAKE_HOST_WIN32)
  execute_process(COMMAND chmod -R u=rwX,go=rX "${CPACK_TEMPORARY_DIRECTORY}" COMMAND_ERROR_IS_FATAL ANY)
endif()

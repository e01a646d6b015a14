# Run by CPack on the stages of the two Debian packages: what Debian's rules ask for beyond the files that are installed.
set(templates "${CPACK_VQTM_SOURCES}/packaging/debian")
set(package_Runtime "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME}")
set(package_Development "${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME}")

# compress(FILE...): as Debian's tools do, without name and time, so that the same file gives the same bytes.
function(compress)
  if(ARGN)
    execute_process(COMMAND gzip -9nf ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

function(strip)
  execute_process(COMMAND strip --remove-section=.comment ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN ITEMS Runtime Development)
  set(stage "${CPACK_TEMPORARY_DIRECTORY}/${component}")
  set(package "${package_${component}}")
  set(documents "${stage}/usr/share/doc/${package}")

  # Every package has its own folder of documents, with its licence under Debian's name.
  if(NOT package STREQUAL "vqtm" AND EXISTS "${stage}/usr/share/doc/vqtm")
    file(RENAME "${stage}/usr/share/doc/vqtm" "${documents}")
  endif()
  file(REMOVE "${documents}/LICENSE" "${documents}/CHANGELOG.md")
  configure_file("${templates}/copyright" "${documents}/copyright" COPYONLY)
  configure_file("${templates}/changelog" "${documents}/changelog.Debian" COPYONLY)
  configure_file("${CPACK_VQTM_SOURCES}/CHANGELOG.md" "${documents}/changelog" COPYONLY)
  if(EXISTS "${templates}/${package}.lintian-overrides")
    configure_file("${templates}/${package}.lintian-overrides" "${stage}/usr/share/lintian/overrides/${package}" COPYONLY)
  endif()
  file(GLOB manuals "${stage}/usr/share/man/man*/*.[0-9]")
  compress("${documents}/changelog.Debian" "${documents}/changelog" ${manuals})

  # The system's own folders need no search path, and nobody the compilers' notes.
  file(GLOB_RECURSE binaries "${stage}/usr/bin/*" "${stage}/usr/lib/*.so.*")
  foreach(binary IN LISTS binaries)
    if(NOT IS_SYMLINK "${binary}")
      file(RPATH_REMOVE FILE "${binary}")
      strip(--strip-unneeded "${binary}")
    endif()
  endforeach()
  file(GLOB_RECURSE archives "${stage}/usr/lib/*.a")
  if(archives)
    strip(--strip-debug --enable-deterministic-archives ${archives})
  endif()

  # The place of these packages is known, and flags for the system's own folders can be left out.
  file(GLOB_RECURSE modules "${stage}/usr/*.pc")
  if(modules)
    execute_process(COMMAND sed -i "s|^prefix=.*|prefix=/usr|" ${modules} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()

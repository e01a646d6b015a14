# The binary interface, as docs/abi describes it: its tests, and the targets of `./dev abi`.
if(WIN32)
  set(abi_target win32)
elseif(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(abi_target linux32)
else()
  set(abi_target native)
endif()
# LLVM's objdump does not print debugging information.
set(objdump "${CMAKE_OBJDUMP}")
if(objdump MATCHES "llvm")
  find_program(VQTM_GNU_OBJDUMP objdump)
  set(objdump "${VQTM_GNU_OBJDUMP}")
endif()
set(shared $<TARGET_FILE:vq95FBSB> $<TARGET_FILE:vq95FINB> $<TARGET_FILE:vq95FtmB>)
separate_arguments(compiler_flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS}")
set(abi "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/tools/abi/abi.py")
set(exports exports ${abi_target} "${objdump}" ${shared})
set(layouts layouts ${abi_target} "${objdump}" ${CMAKE_CXX_COMPILER_ID} "${CMAKE_CXX_COMPILER}" ${compiler_flags}
  -std=c++20 -fsigned-char)

add_test(NAME binaries COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_SOURCE_DIR}/binaries_test.py" "${objdump}" ${shared})
add_test(NAME exports COMMAND ${abi} compare ${exports})
add_test(NAME layouts COMMAND ${abi} compare ${layouts})
set(update COMMAND ${abi} update ${exports} COMMAND ${abi} update ${layouts})

# What abidw tells depends on the compiler. It wants libraries of its own, with debugging information, which take half a minute to
# build: only one target has it among its tests, because the other one's difference is layout.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
  set(descriptions descriptions ${abi_target} "${CMAKE_COMMAND}" "${PROJECT_BINARY_DIR}/abi"
    "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" "-DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}"
    "-DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}")
  if(abi_target STREQUAL "native")
    add_test(NAME abi COMMAND ${abi} compare ${descriptions})
    set_tests_properties(abi PROPERTIES SKIP_RETURN_CODE 77)
  endif()
  add_custom_target(abi_check COMMAND ${abi} compare ${descriptions} VERBATIM USES_TERMINAL)
  list(APPEND update COMMAND ${abi} update ${descriptions})
endif()
add_custom_target(abi_update ${update} VERBATIM USES_TERMINAL)
add_dependencies(abi_update vq95FBSB vq95FINB vq95FtmB)

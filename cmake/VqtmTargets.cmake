# How a library and a program of this tree are compiled.

set(VQTM_EXPORTS_MAP "${CMAKE_CURRENT_LIST_DIR}/exports.map")

# The flags that every target of this tree shares.
function(vqtm_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE
    -fsigned-char
    $<$<BOOL:${VQTM_WERROR}>:-Wall -Wextra -Wpedantic -Wconversion -Werror>)
endfunction()

# vqtm_add_library(NAME ALIAS PREFIX SOURCE_DIR dir INCLUDE_DIR dir LINK libraries...)
#
# Makes the shared library NAME (alias vq::ALIAS) and the static one NAME_static (alias vq::ALIAS_static) of all sources in
# SOURCE_DIR. Their export mark PREFIX_API follows PREFIX_BUILD (inside the shared library) and PREFIX_STATIC. Both kinds have the
# same object files where the export mark does not change the code, that is anywhere but on Windows.
function(vqtm_add_library name alias prefix)
  cmake_parse_arguments(PARSE_ARGV 3 arg "" "SOURCE_DIR;INCLUDE_DIR" "LINK")
  file(GLOB sources CONFIGURE_DEPENDS "${arg_SOURCE_DIR}/*.cpp")
  file(GLOB headers CONFIGURE_DEPENDS "${arg_INCLUDE_DIR}/*.h")
  list(TRANSFORM arg_LINK APPEND "_static" OUTPUT_VARIABLE static_link)

  if(WIN32)
    add_library(${name} SHARED ${sources})
    add_library(${name}_static STATIC ${sources})
    set(compiled ${name} ${name}_static)
    target_compile_definitions(${name} PRIVATE ${prefix}_BUILD)
    target_link_options(${name} PRIVATE -static)
  else()
    add_library(${name}_objects OBJECT ${sources})
    set_target_properties(${name}_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${name}_objects PRIVATE -fno-semantic-interposition -fno-plt)
    add_library(${name} SHARED $<TARGET_OBJECTS:${name}_objects>)
    add_library(${name}_static STATIC $<TARGET_OBJECTS:${name}_objects>)
    target_link_libraries(${name}_objects PRIVATE ${arg_LINK})
    target_link_options(${name} PRIVATE "LINKER:--version-script,${VQTM_EXPORTS_MAP}")
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${VQTM_EXPORTS_MAP}")
    set(compiled ${name}_objects)
  endif()

  foreach(target IN LISTS compiled)
    vqtm_compile_options(${target})
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fvect-cost-model=dynamic>)
    # glibc never unloads a library with unique symbols. Where the compiler optimizes, no constant of a class is left as one.
    target_compile_options(${target} PRIVATE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Debug>>:-fno-gnu-unique>)
    target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${arg_INCLUDE_DIR}")
  endforeach()
  foreach(target IN ITEMS ${name} ${name}_static)
    target_compile_features(${target} INTERFACE cxx_std_20)
    target_include_directories(${target} INTERFACE
      $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/${arg_INCLUDE_DIR}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vqtm>)
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  endforeach()

  target_compile_definitions(${name}_static PUBLIC ${prefix}_STATIC)
  target_link_libraries(${name} PUBLIC ${arg_LINK})
  target_link_libraries(${name}_static PUBLIC ${static_link})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${alias})
  set_target_properties(${name}_static PROPERTIES
    OUTPUT_NAME ${name}
    EXPORT_NAME ${alias}_static)
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "" SOVERSION "" VERSION "")
  endif()
  add_library(vq::${alias} ALIAS ${name})
  add_library(vq::${alias}_static ALIAS ${name}_static)
  set_property(GLOBAL APPEND PROPERTY VQTM_LIBRARIES ${name} ${name}_static)
  set_property(GLOBAL APPEND PROPERTY VQTM_SHARED_LIBRARIES ${name})
  set_property(GLOBAL APPEND PROPERTY VQTM_HEADERS ${headers})
endfunction()

# vqtm_add_program(NAME sources...): a program with this tree's flags; on Windows it needs nothing but Windows and our own DLLs.
function(vqtm_add_program name)
  add_executable(${name} ${ARGN})
  vqtm_compile_options(${name})
  if(MINGW)
    target_link_options(${name} PRIVATE -static)
  endif()
endfunction()

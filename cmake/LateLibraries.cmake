# Libraries of Windows that are loaded at the first call of one of their functions, from the system's folder alone, by
# src/system/late_import.cpp: whoever puts a library of such a name beside an elevated program would otherwise run in
# it. Our programs start with none but the libraries that Windows itself protects from that.
function(velvane_late_library name)
  get_filename_component(prefix ${CMAKE_C_COMPILER} NAME)
  string(REGEX REPLACE "-gcc.*" "" prefix ${prefix})
  set(archive ${CMAKE_BINARY_DIR}/late/lib${name}_late.a)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/late)
  set(functions ${CMAKE_BINARY_DIR}/late/lib${name}_late.rsp)
  add_custom_command(OUTPUT ${archive} ${functions} VERBATIM
    COMMAND bash ${CMAKE_SOURCE_DIR}/cmake/late-library.sh ${prefix} ${name} ${archive}
    DEPENDS ${CMAKE_SOURCE_DIR}/cmake/late-library.sh)
  add_custom_target(late_${name}_archive DEPENDS ${archive})
  add_library(late_${name}_import STATIC IMPORTED GLOBAL)
  set_target_properties(late_${name}_import PROPERTIES
    IMPORTED_LOCATION ${archive} INTERFACE_LINK_LIBRARIES velvane_libraries)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set_target_properties(late_${name}_import PROPERTIES INTERFACE_LINK_OPTIONS "@${functions}")
  endif()
  add_dependencies(late_${name}_import late_${name}_archive)
  # The test programs take the functions at the start, so that tests/support/api_hook finds them.
  add_library(late_${name} INTERFACE)
  target_link_libraries(late_${name} INTERFACE
    $<IF:$<BOOL:$<TARGET_PROPERTY:VELVANE_EARLY_LIBRARIES>>,${name},late_${name}_import>)
endfunction()

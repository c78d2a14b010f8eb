# vantro_import_library(NAME DEF): makes the interface library import_<NAME> from a .def file, so that the build needs
# no SDK of the library that it links.
function(vantro_import_library name def)
  set(archive "${CMAKE_BINARY_DIR}/imports/lib${name}.dll.a")
  add_custom_command(
    OUTPUT "${archive}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/imports"
    # Without --temp-prefix, dlltool names the archive's members after its process id, and these names appear among the
    # symbols.
    COMMAND ${CMAKE_DLLTOOL} --temp-prefix ${name}_ -m i386:x86-64 -d "${def}" -l "${archive}"
    DEPENDS "${def}" VERBATIM)
  add_custom_target(import_${name}_archive DEPENDS "${archive}")
  add_library(import_${name} INTERFACE)
  target_link_libraries(import_${name} INTERFACE "${archive}")
  add_dependencies(import_${name} import_${name}_archive)
endfunction()

if(WIN32)
  vantro_import_library(libvlc "${CMAKE_SOURCE_DIR}/cmake/imports/libvlc.def")
  vantro_import_library(flutter_windows "${CMAKE_SOURCE_DIR}/cmake/imports/flutter_windows.def")
endif()

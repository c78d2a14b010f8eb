# vantro_version_resource(TARGET RC [FILE...]): puts the resources of resources/RC into a program: at least its name, its
# version and its copyright. The files are those that RC includes.
function(vantro_version_resource target rc)
  configure_file("${CMAKE_SOURCE_DIR}/resources/version.h.in" "${CMAKE_BINARY_DIR}/resources/version.h" @ONLY)
  set(source "${CMAKE_SOURCE_DIR}/resources/${rc}")
  set(taken "${CMAKE_SOURCE_DIR}/resources/version_block.rc" "${CMAKE_BINARY_DIR}/resources/version.h")
  foreach(file ${ARGN})
    list(APPEND taken "${CMAKE_SOURCE_DIR}/resources/${file}")
  endforeach()
  set_source_files_properties("${source}" PROPERTIES OBJECT_DEPENDS "${taken}")
  # A separate library, because the resource compiler accepts none of the C++ compiler's flags.
  add_library(${target}_resources OBJECT "${source}")
  target_include_directories(${target}_resources PRIVATE "${CMAKE_SOURCE_DIR}/resources" "${CMAKE_BINARY_DIR}/resources")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resources>)
endfunction()

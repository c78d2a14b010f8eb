# vantro_scripted_runtime(NAME FOLDER VARIANT): builds the program into the folder and puts beside it the scripted
# libvlc with the given export set, a libvlccore.dll and the loopback engine.
function(vantro_scripted_runtime name folder variant)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${folder}")
  add_dependencies(${name} scripted_libvlc_${variant} scripted_libvlccore loopback_engine)
  add_custom_command(TARGET ${name} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different "$<TARGET_FILE:scripted_libvlc_${variant}>" "${folder}/libvlc.dll"
    COMMAND ${CMAKE_COMMAND} -E copy_if_different "$<TARGET_FILE:scripted_libvlccore>" "${folder}/libvlccore.dll"
    COMMAND ${CMAKE_COMMAND} -E copy_if_different "$<TARGET_FILE:loopback_engine>" "${folder}/flutter_windows.dll"
    VERBATIM)
endfunction()

# vantro_unit_test(NAME SOURCES... [LIBVLC VARIANT]): adds one GoogleTest program in its own folder, as one test of
# ctest. On Windows the scripted libvlc with the given export set ("full" by default), a libvlccore.dll and the loopback
# engine are beside it. The test runs in that folder and writes its log file there.
function(vantro_unit_test name)
  cmake_parse_arguments(arg "" "LIBVLC" "" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  set(folder "${CMAKE_BINARY_DIR}/unit/${name}")
  if(WIN32)
    if(NOT arg_LIBVLC)
      set(arg_LIBVLC full)
    endif()
    target_link_libraries(${name} PRIVATE vantro_core test_support GTest::gmock)
    vantro_scripted_runtime(${name} "${folder}" ${arg_LIBVLC})
  else()
    target_link_libraries(${name} PRIVATE vantro_portable test_support GTest::gmock)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${folder}")
  endif()
  # In a cross build ctest starts it through the emulator that the toolchain file names.
  add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY "${folder}")
  add_dependencies(unit_tests ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

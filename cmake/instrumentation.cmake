# Two instrumented builds with mingw's gcc. GoogleTest, the engine and the scripted libvlc carry no instruments.
option(VANTRO_COVERAGE "Count which lines run" OFF)
option(VANTRO_TRAP_UNDEFINED "End the program at undefined behaviour" OFF)

if(VANTRO_COVERAGE)
  # The tests too: without optimisation, an inline function of a header may be taken from their objects.
  add_library(coverage_at_end STATIC "${CMAKE_SOURCE_DIR}/tests/coverage/write_counters.cpp")
  target_compile_options(vantro_portable PUBLIC --coverage -fprofile-update=atomic)
  target_link_options(vantro_portable PUBLIC --coverage -Wl,--wrap=_Exit,--wrap=__imp_SetUnhandledExceptionFilter)
  target_link_libraries(vantro_portable PUBLIC coverage_at_end)
endif()
if(VANTRO_TRAP_UNDEFINED)
  # There is no library for mingw that could tell more than the trap does: 0xC000001D, an illegal instruction.
  set(VANTRO_TRAP_OPTIONS -fsanitize=undefined -fsanitize-undefined-trap-on-error)
  target_compile_options(vantro_portable PRIVATE ${VANTRO_TRAP_OPTIONS})
  target_compile_options(vantro_core PRIVATE ${VANTRO_TRAP_OPTIONS})
endif()

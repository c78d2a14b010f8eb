# Two instrumented builds with mingw's gcc. GoogleTest, the engine and the scripted libvlc are not instrumented.
option(VANTRO_COVERAGE "Count which lines run" OFF)
option(VANTRO_TRAP_UNDEFINED "End the program at undefined behaviour" OFF)

if(VANTRO_COVERAGE)
  # PUBLIC, so that the tests are instrumented too: without optimisation, the linker may take an inline function of a
  # header from their objects.
  add_library(coverage_at_end STATIC "${CMAKE_SOURCE_DIR}/tests/coverage/write_counters.cpp")
  target_compile_options(vantro_portable PUBLIC --coverage -fprofile-update=atomic)
  target_link_options(vantro_portable PUBLIC --coverage -Wl,--wrap=_Exit,--wrap=__imp_SetUnhandledExceptionFilter)
  target_link_libraries(vantro_portable PUBLIC coverage_at_end)
endif()
if(VANTRO_TRAP_UNDEFINED)
  # mingw has no sanitizer library that could print a message. The program ends with 0xC000001D, an illegal instruction.
  set(VANTRO_TRAP_OPTIONS -fsanitize=undefined -fsanitize-undefined-trap-on-error)
  target_compile_options(vantro_portable PRIVATE ${VANTRO_TRAP_OPTIONS})
  target_compile_options(vantro_core PRIVATE ${VANTRO_TRAP_OPTIONS})
endif()

# Counters in the product's objects (VANTRO_COVERAGE), and in the programs that are linked with it: an inline function of
# a header may be taken from either. GoogleTest, the engine and the scripted libvlc carry none.
add_library(coverage_at_end STATIC "${CMAKE_SOURCE_DIR}/tests/coverage/write_counters.cpp")
target_compile_options(vantro_portable PUBLIC --coverage -fprofile-update=atomic)
target_link_options(vantro_portable PUBLIC --coverage -Wl,--wrap=_Exit,--wrap=__imp_SetUnhandledExceptionFilter)
target_link_libraries(vantro_portable PUBLIC coverage_at_end)

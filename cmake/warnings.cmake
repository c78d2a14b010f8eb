# Compiler flags of the whole tree, each exception with its reason.
add_library(vantro_flags INTERFACE)
target_compile_features(vantro_flags INTERFACE cxx_std_20)
target_compile_options(vantro_flags INTERFACE
  -Wall -Wextra -Wshadow -Wformat=2 -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Werror
  # Unused parameters are part of the signatures that Windows and libvlc prescribe.
  -Wno-unused-parameter
  # No path of the building machine in the binary.
  "-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
if(WIN32)
  target_compile_definitions(vantro_flags INTERFACE
    _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN
    # printf with %zu, %lld and %f as the standard has them.
    __USE_MINGW_ANSI_STDIO=1)
  # GetProcAddress hands out one function type for all; the Win32 headers' macros (MAKEINTRESOURCE) cast in C style.
  target_compile_options(vantro_flags INTERFACE -Wno-cast-function-type)
  # Static runtime: the exe needs no compiler library beside it. No time stamp: equal sources give equal bytes.
  target_link_options(vantro_flags INTERFACE -static -Wl,--no-insert-timestamp)
endif()

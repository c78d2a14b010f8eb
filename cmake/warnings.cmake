# Compiler flags of the whole tree, each exception with its reason. A flag that the compiler doesn't know is left out.
# Warnings are errors where CMAKE_COMPILE_WARNING_AS_ERROR is on, as ./dev and the continuous integration have it.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

add_library(vantro_flags INTERFACE)
target_compile_features(vantro_flags INTERFACE cxx_std_20)

# vantro_flags_if_known(FLAG...): adds each flag that the C++ compiler takes.
function(vantro_flags_if_known)
  foreach(flag ${ARGN})
    string(MAKE_C_IDENTIFIER "VANTRO_COMPILER_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(vantro_flags INTERFACE ${flag})
    endif()
  endforeach()
endfunction()

vantro_flags_if_known(-Wall -Wextra -Wshadow -Wformat=2 -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  # Unused parameters are part of the signatures that Windows and libvlc prescribe.
  -Wno-unused-parameter)
# No path of the building machine in the binary.
check_cxx_compiler_flag("-ffile-prefix-map=/from=/to" VANTRO_COMPILER_HAS_PREFIX_MAP)
if(VANTRO_COMPILER_HAS_PREFIX_MAP)
  target_compile_options(vantro_flags INTERFACE "-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
endif()
if(WIN32)
  target_compile_definitions(vantro_flags INTERFACE
    _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN
    # printf with %zu, %lld and %f as the standard has them.
    __USE_MINGW_ANSI_STDIO=1)
  # GetProcAddress returns one function type for all functions; the Win32 headers' macros (MAKEINTRESOURCE) cast in C style.
  vantro_flags_if_known(-Wno-cast-function-type)
  # Static runtime: the exe needs no compiler library beside it. No time stamp: equal sources give equal bytes.
  foreach(flag -static -Wl,--no-insert-timestamp)
    string(MAKE_C_IDENTIFIER "VANTRO_LINKER_HAS${flag}" known)
    check_linker_flag(CXX ${flag} ${known})
    if(${known})
      target_link_options(vantro_flags INTERFACE ${flag})
    endif()
  endforeach()
endif()
option(VANTRO_PDB "Write NAME.pdb into the build folder: the symbols that Windows debuggers read (clang and lld only)" OFF)
if(VANTRO_PDB)
  # The system's own thread-local variables: clang's CodeView names a symbol that an emulated one does not have.
  target_compile_options(vantro_flags INTERFACE -g -gcodeview -ffile-compilation-dir=. -fno-emulated-tls)
  # A program names its PDB without a folder. The PDB has the same bytes in every build folder. So has its id, which is
  # computed from them and stored in the program.
  target_link_options(vantro_flags INTERFACE
    "LINKER:--pdb=$<TARGET_PROPERTY:NAME>.pdb"
    "LINKER:-Xlink=-pdbaltpath:$<TARGET_PROPERTY:NAME>.pdb"
    "LINKER:-Xlink=-pdbsourcepath:C:/vantro"
    # Removes functions that nothing calls. lld keeps them otherwise, a fifth of the program.
    "LINKER:--gc-sections")
endif()

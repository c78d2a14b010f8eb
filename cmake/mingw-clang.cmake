# clang and lld for Windows, with mingw-w64's headers and gcc's C++ library. What ships is built with them: only they write
# a PDB, the symbols that Windows debuggers read.
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-windows-gnu)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-windows-gnu)

file(GLOB VANTRO_GCC_ROOTS /usr/lib/gcc/${VANTRO_TRIPLE}/*-posix)
list(GET VANTRO_GCC_ROOTS 0 VANTRO_GCC_ROOT)
set(VANTRO_CXX_HEADERS "${VANTRO_GCC_ROOT}/include/c++")
# Emulated: gcc's library keeps its thread-local variables that way.
set(CMAKE_CXX_FLAGS_INIT "--start-no-unused-arguments -nostdinc++ -isystem ${VANTRO_CXX_HEADERS} -isystem ${VANTRO_CXX_HEADERS}/${VANTRO_TRIPLE} \
-isystem ${VANTRO_CXX_HEADERS}/backward --end-no-unused-arguments -femulated-tls")

# gcc's own libraries, and winpthreads, which its C++ library needs. clang looks for neither by itself.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "--start-no-unused-arguments -fuse-ld=lld -B${VANTRO_GCC_ROOT} -L${VANTRO_GCC_ROOT} \
--end-no-unused-arguments -lpthread")
endforeach()

# clang as a second compiler for Windows: mingw-w64's headers and C++ library, linked by mingw's g++.
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-windows-gnu)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-windows-gnu)

file(GLOB VANTRO_GCC_ROOTS /usr/lib/gcc/${VANTRO_TRIPLE}/*-posix)
list(GET VANTRO_GCC_ROOTS 0 VANTRO_GCC_ROOT)
set(VANTRO_CXX_HEADERS "${VANTRO_GCC_ROOT}/include/c++")
# Emulated: gcc's library keeps its thread-local variables that way.
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${VANTRO_CXX_HEADERS} -isystem ${VANTRO_CXX_HEADERS}/${VANTRO_TRIPLE} \
-isystem ${VANTRO_CXX_HEADERS}/backward -femulated-tls")

# CMake's platform files, read after this one, would have clang link.
set(CMAKE_USER_MAKE_RULES_OVERRIDE "${CMAKE_CURRENT_LIST_DIR}/mingw-clang-link.cmake")

# Provides GTest::gtest and GTest::gmock: an installed GoogleTest for the compiler in use, or else one built from
# source. Debian has no build for mingw-w64; its package installs the sources in /usr/src.
set(VANTRO_GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH "GoogleTest's sources, used when no package is found")
find_package(GTest CONFIG QUIET GLOBAL)
if(NOT GTest_FOUND)
  block()
    set(INSTALL_GTEST OFF)
    set(BUILD_GMOCK ON)
    set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)  # not this project's warnings
    add_subdirectory("${VANTRO_GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
  endblock()
endif()

// Checks a condition of a fuzz target. The fuzzer keeps the input that breaks it.
#pragma once

#include <cstdio>
#include <cstdlib>

#define REQUIRE(condition)                                                         \
  do {                                                                             \
    if (!(condition)) {                                                            \
      std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                \
    }                                                                              \
  } while (false)

#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the run when what must always hold does not; the fuzzer keeps the input.
#define OSTREL_REQUIRE(condition)                                          \
  do {                                                                     \
    if (!(condition)) {                                                    \
      std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                        \
    }                                                                      \
  } while (false)

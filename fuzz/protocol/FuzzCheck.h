#pragma once

#include <cstdio>
#include <cstdlib>

// A broken property ends the run with the input that broke it.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition);     \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

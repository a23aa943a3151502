#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program when what is to be timed does not do its work.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    fprintf(stderr, "benchmark is wrong: %s\n", what);
    std::exit(1);
}

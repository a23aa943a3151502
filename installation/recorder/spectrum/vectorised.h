#pragma once

// A loop that is marked KORVE_LOOP may be called by a function that is marked KORVE_WIDE: the same loop, compiled for
// processors with vectors of 256 bits. Ask hasWideVectors() before calling that.

#if defined(__x86_64__)
#define KORVE_WIDE __attribute__((target("avx2,fma")))
#else
#define KORVE_WIDE
#endif
#define KORVE_LOOP __attribute__((always_inline)) inline

namespace installation::recorder
{

inline bool hasWideVectors()
{
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#else
    return false;
#endif
}

} // namespace installation::recorder

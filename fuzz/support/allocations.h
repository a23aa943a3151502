#pragma once

#include <algorithm>
#include <cstddef>

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void *, std::size_t),
                                                         void (*onFree)(const volatile void *)) __attribute__((weak));

/// The largest piece of memory that is asked for while this lives. Only a build with the address sanitizer can tell;
/// elsewhere it is 0.
class Allocations
{
public:
    Allocations()
    {
        [[maybe_unused]] static const bool isWatched = watch();
        largestYet = 0;
    }
    std::size_t largest() const { return largestYet; }

private:
    static bool watch()
    {
        return __sanitizer_install_malloc_and_free_hooks &&
               __sanitizer_install_malloc_and_free_hooks(note, ignore) != 0;
    }
    static void note(const volatile void *, std::size_t size) { largestYet = std::max(largestYet, size); }
    static void ignore(const volatile void *) {}

    static inline std::size_t largestYet = 0;
};

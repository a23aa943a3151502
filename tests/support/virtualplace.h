#pragma once

#include <cstddef>
#include <cstring>

/// Where a virtual member function stands in the table of its class, whose destructor takes the first two places.
template <class Function> std::ptrdiff_t virtualPlace(Function function)
{
    // A pointer to a virtual member function begins with one plus its offset in the table.
    std::ptrdiff_t offset;
    std::memcpy(&offset, &function, sizeof offset);
    return (offset - 1) / std::ptrdiff_t(sizeof(void *));
}

/// Where a virtual member function added to @p Class would stand: behind all that the class has.
template <class Class> std::ptrdiff_t placeBehind()
{
    struct Extended : Class {
        virtual void added() {}
    };
    return virtualPlace(&Extended::added);
}

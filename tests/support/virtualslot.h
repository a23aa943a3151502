#pragma once

#include <cstddef>
#include <cstring>

/// The place of a virtual member function in the table of its class, counted from 0.
template <class Function> std::ptrdiff_t virtualSlot(Function function)
{
    // A pointer to a virtual member function begins with one plus its offset in the table.
    std::ptrdiff_t offset;
    std::memcpy(&offset, &function, sizeof offset);
    return (offset - 1) / std::ptrdiff_t(sizeof(void *));
}

/// The place that a virtual member function added to @p Class would take: behind all that the class has.
template <class Class> std::ptrdiff_t slotBehind()
{
    struct Extended : Class {
        virtual void added() {}
    };
    return virtualSlot(&Extended::added);
}

#pragma once

#include <unistd.h>

#include <utility>

namespace installation::recorder
{

/// Owns a descriptor of the system, or none.
class Descriptor
{
public:
    explicit Descriptor(int descriptor = -1) : descriptor(descriptor) {}
    Descriptor(Descriptor &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~Descriptor()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }

    int get() const { return descriptor; }

private:
    int descriptor;
};

} // namespace installation::recorder

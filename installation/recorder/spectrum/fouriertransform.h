#pragma once

#include <memory>

namespace installation::recorder
{

/// The Fourier transform of one length, with its numbers; the plans behind it are kept and shared.
///
/// Thread: one at a time; several of them may work beside each other.
class FourierTransform
{
public:
    /// Of @p size complex or real samples. The first of a length takes up to a quarter of a second to plan.
    /// @throws std::bad_alloc.
    FourierTransform(unsigned size, bool complex);
    ~FourierTransform();
    FourierTransform(const FourierTransform &) = delete;

    /// Room for the samples: real parts, each with its imaginary one behind it where they are complex.
    float *samples() { return input.get(); }
    /// Complex numbers: as many as samples, from frequency 0 up and then from the lowest one; for real samples half as
    /// many and one, from 0 up. Not divided by the length.
    const float *transform();
    unsigned size() const { return length; }
    bool isComplex() const { return complex; }

private:
    struct Plan;
    struct Release {
        void operator()(float *numbers) const;
    };
    using Numbers = std::unique_ptr<float, Release>;

    static Numbers allocate(std::size_t count);
    static std::shared_ptr<const Plan> planFor(unsigned size, bool complex);

    const unsigned length;
    const bool complex;
    const std::shared_ptr<const Plan> plan;
    const Numbers input;
    const Numbers output;
};

} // namespace installation::recorder

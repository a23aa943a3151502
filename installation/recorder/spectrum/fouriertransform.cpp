#include "installation/recorder/spectrum/fouriertransform.h"

#include <fftw3.h>

#include <list>
#include <mutex>
#include <new>

namespace installation::recorder
{

namespace
{

constexpr double planningSeconds = 0.25;
constexpr std::size_t plansKept = 8;

/// Of FFTW everything but the transform itself wants one thread at a time.
std::mutex &planner()
{
    static std::mutex mutex;
    return mutex;
}

fftwf_complex *complexNumbers(float *numbers)
{
    return reinterpret_cast<fftwf_complex *>(numbers);
}

} // namespace

struct FourierTransform::Plan {
    Plan(unsigned size, bool complex, float *in, float *out)
        : size(size), complex(complex),
          plan(complex ? fftwf_plan_dft_1d(static_cast<int>(size), complexNumbers(in), complexNumbers(out),
                                           FFTW_FORWARD, FFTW_MEASURE)
                       : fftwf_plan_dft_r2c_1d(static_cast<int>(size), in, complexNumbers(out), FFTW_MEASURE))
    {
        if (!plan)
            throw std::bad_alloc();
    }
    ~Plan()
    {
        const std::scoped_lock lock(planner());
        fftwf_destroy_plan(plan);
    }
    Plan(const Plan &) = delete;

    const unsigned size;
    const bool complex;
    const fftwf_plan plan;
};

void FourierTransform::Release::operator()(float *numbers) const
{
    fftwf_free(numbers);
}

FourierTransform::Numbers FourierTransform::allocate(std::size_t count)
{
    Numbers numbers(fftwf_alloc_real(count));
    if (!numbers)
        throw std::bad_alloc();
    return numbers;
}

std::shared_ptr<const FourierTransform::Plan> FourierTransform::planFor(unsigned size, bool complex)
{
    static std::mutex mutex; // guards the list; the planner's own is taken within, and by plans that go
    static std::list<std::shared_ptr<const Plan>> plans; // the last one used comes first
    const std::scoped_lock lock(mutex);
    for (auto plan = plans.begin(); plan != plans.end(); ++plan)
        if ((*plan)->size == size && (*plan)->complex == complex) {
            plans.splice(plans.begin(), plans, plan);
            return plans.front();
        }
    const Numbers in = allocate(2 * std::size_t(size)); // planning writes to them
    const Numbers out = allocate(2 * std::size_t(size) + 2);
    {
        const std::scoped_lock planning(planner());
        fftwf_set_timelimit(planningSeconds);
        plans.push_front(std::make_shared<const Plan>(size, complex, in.get(), out.get()));
    }
    if (plans.size() > plansKept)
        plans.pop_back();
    return plans.front();
}

FourierTransform::FourierTransform(unsigned size, bool complex)
    : length(size), complex(complex), plan(planFor(size, complex)), input(allocate(2 * std::size_t(size))),
      output(allocate(2 * std::size_t(size) + 2))
{
}

FourierTransform::~FourierTransform() = default;

const float *FourierTransform::transform()
{
    if (complex)
        fftwf_execute_dft(plan->plan, complexNumbers(input.get()), complexNumbers(output.get()));
    else
        fftwf_execute_dft_r2c(plan->plan, input.get(), complexNumbers(output.get()));
    return output.get();
}

} // namespace installation::recorder

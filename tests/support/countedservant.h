#pragma once

#include <atomic>

/// A servant of a test that counts its users itself, since the thread sanitizer does not see what is counted in the
/// library of the ORB.
template <typename Servant> class CountedServant : public Servant
{
public:
    using Servant::Servant;

    void _add_ref() override { ++uses; }
    void _remove_ref() override
    {
        if (--uses == 0)
            delete this;
    }

private:
    std::atomic<int> uses = 1;
};

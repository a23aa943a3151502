#pragma once

#include "coresupport/ihastimercallback.h"

namespace values
{
// IOptimizeTrigger, ISupportTransaction and IValue are one chain, so that a value carries one table pointer for all.

/// A value whose transmissions may be thinned out.
class IOptimizeTrigger : public Ulma::IHasTimerCallback
{
public:
    /// On, as for every new value: a mirror may merge changes that come quickly. Off: it sends each one.
    virtual void setOptimized(bool on) = 0;
    virtual bool isOptimized() const = 0;
};
} // namespace values

#pragma once

#include "installation/manager/channel.h"

#include <chrono>
#include <functional>

namespace installation
{

/// The program that stands behind a channel: asked and told with a limit, so that one that hangs holds up nobody but
/// its own channel. A channel may have none; then there is nobody to ask, and nothing is wrong with that.
///
/// Thread: any, one at a time.
class ChannelManager
{
public:
    using Calls = std::function<void(TQ_KRV::IF_KRV_c_ChanMan_ptr)>;

    ChannelManager(const ChannelSettings &settings, std::chrono::milliseconds limit);

    bool exists() const { return !CORBA::is_nil(reference); }
    /// @throws ChannelFailure for what @p calls raise, and when there is no answer.
    void ask(const Calls &calls) const;
    /// What fails is traced.
    void tell(const Calls &calls) const;

private:
    TQ_KRV::IF_KRV_c_ChanMan_var reference;
};

/// A reference as text, empty for nil, and back; nil also for a text that is damaged. No call is made.
QString textOfReference(CORBA::Object_ptr object);
CORBA::Object_ptr referenceFrom(const QString &text);

} // namespace installation

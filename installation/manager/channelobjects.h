#pragma once

#include "installation/manager/channelcore.h"

#include "installation/calls/servedobjects.h"

#include <map>

namespace installation
{

/// The objects that serve the channels, under the key "KorveChannel/ID" each.
///
/// Thread: any.
class ChannelObjects : public std::enable_shared_from_this<ChannelObjects>
{
public:
    ChannelObjects(ServedObjects served, std::shared_ptr<ChannelCore> core);
    ChannelObjects(const ChannelObjects &) = delete;

    /// Once, however often it is asked for.
    void serve(const QString &id);
    /// Nil for an unknown id; the caller releases it.
    TQ_KRV::IF_KRV_c_Chan_ptr find(const QString &id) const;

private:
    void remove(const QString &id, bool forced);

    const ServedObjects served;
    const std::shared_ptr<ChannelCore> core;
    mutable std::mutex mutex; // guards `objects`; not held during calls
    std::map<QString, std::shared_ptr<Activation>> objects;
};

} // namespace installation

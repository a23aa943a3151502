#pragma once

#include "installation/manager/channelcore.h"

#include "installation/cco/activation.h"

#include <map>

namespace installation
{

/// The objects that serve the channels, under the key "KorveChannel/ID" each.
///
/// Thread: any.
class ChannelObjects : public std::enable_shared_from_this<ChannelObjects>
{
public:
    ChannelObjects(PortableServer::POA_ptr poa, std::shared_ptr<ChannelCore> core);
    ChannelObjects(const ChannelObjects &) = delete;

    /// Once, however often it is asked for.
    void serve(const QString &id);
    /// Nil for an unknown id; the caller releases it.
    TQ_KRV::IF_KRV_c_Chan_ptr find(const QString &id) const;

private:
    void remove(const QString &id, bool forced);

    const PortableServer::POA_var poa;
    const std::shared_ptr<ChannelCore> core;
    mutable std::mutex mutex; // guards `objects`; not held during calls
    std::map<QString, std::shared_ptr<const Activation>> objects;
};

} // namespace installation

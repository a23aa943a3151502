#pragma once

#include "connectionmanagement/channelstate.h"
#include "idl/korvemanager.hh"
#include "korvebase/korvebase_export.h"

#include <QString>

#include <memory>
#include <vector>

namespace KorveCommon
{
class IChannelStateChangedListener;
}

namespace KorveGUI
{
/// The servant that the manager tells about the states of records; its listeners hear of them on the main thread.
///
/// A client activates one and registers its reference at the central object service as "KorveManager/Callbacks/<uuid>",
/// where the manager finds it. Only being ready for replay, replaying and being idle are passed on.
/// Thread: main, but for NotifyStateChange(), which the ORB calls and which waits for nothing. A change that is still
/// on its way to the main thread when the servant is destroyed reaches nobody.
class KORVEBASE_EXPORT ServerCallback : public POA_TQ_KRV::IF_RecordStateChangeCallback,
                                        public PortableServer::RefCountServantBase
{
public:
    ServerCallback();
    ~ServerCallback() override;

    void NotifyStateChange(const char *deviceId, const char *recordId, const char *recordName,
                           TQ_KRV::eRECORD_STATUS status) override;

    /// Borrows @p listener until it is removed. Null and one that is known already change nothing.
    void AddChannelStateChangeListener(KorveCommon::IChannelStateChangedListener *listener);
    void RemoveChannelStateChangeListener(KorveCommon::IChannelStateChangedListener *listener);

private:
    using Listeners = std::vector<KorveCommon::IChannelStateChangedListener *>;

    static void NotifyChannelStateChangedInMainThread(const std::weak_ptr<Listeners> &listeners, const QString &first,
                                                      const QString &second, const QString &third,
                                                      const KorveCommon::ChannelState::State &state);

    const std::shared_ptr<Listeners> listeners; ///< looked at on the main thread only; none is owned
};
} // namespace KorveGUI

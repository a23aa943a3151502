#include "connectionmanagement/abstractserverconnectiondata.h"
#include "connectionmanagement/irecordstatechangedlistener.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "connectionmanagement/korvemanagerconnectiondata.h"
#include "tests/support/virtualslot.h"

#include <gtest/gtest.h>

#include <QMetaMethod>

namespace
{
using namespace KorveCommon;

/// Gives access to the protected operations.
class Slots : public AbstractServerConnectionData
{
public:
    static std::ptrdiff_t initialize() { return virtualSlot(static_cast<void (Slots::*)()>(&Slots::Initialize)); }
};

/// What the class itself adds for Qt, in order.
std::string ownMethods(const QMetaObject &type, QMetaMethod::MethodType kind)
{
    QByteArrayList names;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i)
        if (type.method(i).methodType() == kind)
            names.append(type.method(i).methodSignature());
    return names.join(' ').toStdString();
}

TEST(ServerConnectionOperation, StandsInItsPublishedPlace)
{
    using I = IServerConnectionData;
    const auto first = Slots::initialize();
    const std::ptrdiff_t order[] = {
        virtualSlot(static_cast<void (I::*)(const QString &)>(&I::Initialize)),
        virtualSlot(static_cast<IVtClient *(I::*)(const QString &, ConnectionType)>(&I::getVtClient)),
        virtualSlot(static_cast<IVtClient *(I::*)(ConnectionType)>(&I::getVtClient)),
        virtualSlot(&I::SetChannelId_ValuePath),
        virtualSlot(&I::GetChannelId_ValuePath),
        virtualSlot(&I::SetChannelId),
        virtualSlot(&I::GetChannelId),
        virtualSlot(&I::GetConfiguration),
        virtualSlot(&I::GetBasePath),
        virtualSlot(&I::GetDeviceBasePath),
        virtualSlot(&I::GetStatusPath),
        virtualSlot(&I::GetBitePath),
        virtualSlot(&I::IsConnected),
        virtualSlot(&I::IsChannelConnected),
        virtualSlot(&I::IsDeviceConnected),
        virtualSlot(&I::IsServerConnected),
        virtualSlot(&I::ConnectToAllSubsystems),
        virtualSlot(&I::CreateVTConnectTics),
        virtualSlot(&I::ResetVtClientConnection),
        virtualSlot(&Slots::GetSubsystemList),
        virtualSlot(&Slots::sl_notifyServerAvailablity),
        virtualSlot(&Slots::sl_currentSubsystemChanged),
        virtualSlot(&Slots::sl_onConnected),
    };
    for (std::size_t i = 0; i < std::size(order); ++i)
        EXPECT_EQ(order[i], first + std::ptrdiff_t(i) + 1) << i;
}

TEST(RecordStateListenerOperation, StandsInItsPublishedPlace)
{
    using I = IRecordStateChangedListener;
    EXPECT_LT(virtualSlot(&I::NotifyRecordStateChanged), virtualSlot(&I::GetListenedDevice));
}

TEST(ConnectionSignals, StandInTheirPublishedOrder)
{
    EXPECT_EQ(ownMethods(AbstractServerConnectionData::staticMetaObject, QMetaMethod::Signal),
              "si_korveOnWorkstation(QString,QString) ChannelConnectionEstablished(QString) "
              "ChannelConnectionDisconnected(QString) ConnectionChanged(QString) si_deviceNodeAdded(QString) "
              "si_allTicsConnected(QString) si_allTicsDisconnected(QString)");
    EXPECT_EQ(ownMethods(KorveManagerConnectionData::staticMetaObject, QMetaMethod::Signal),
              "KorveServerConnectionEstablished(QString) KorveServerConnectionDisconnected(QString) "
              "DevicesConnectionEstablished(QString) DevicesConnectionDisconnected(QString) "
              "ChannelConnectionEstablished(QString) ChannelConnectionDisconnected(QString) "
              "ConnectionChanged(QString) si_deviceNodeAdded(QString)");
}

TEST(ConnectionSlots, AreTheThreeOfTheHandler)
{
    const QMetaObject &handler = KorveGUI::KorveGuiToServerCorbaHandler::staticMetaObject;
    EXPECT_EQ(ownMethods(handler, QMetaMethod::Slot),
              "sl_initializeConnection(QString) sl_initializeDirectConnection() sl_disconnect(QString)");
    EXPECT_EQ(ownMethods(handler, QMetaMethod::Signal), "");
}
} // namespace

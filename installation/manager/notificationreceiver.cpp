#include "installation/manager/notificationreceiver.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/notificationreceiver";
constexpr CORBA::ULong recordRemoved = 1;

} // namespace

NotificationReceiver::NotificationReceiver(QString device, std::shared_ptr<RecordStates> states)
    : device(std::move(device)), states(std::move(states))
{
}

void NotificationReceiver::processBiteStateNotification(const TQ_KORVE_IT::struBiteStateNotification &arg1)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("device %1, self-test state %2: %3")
            .arg(device, QString::number(arg1.state), QString::fromUtf8(arg1.text));
    });
}

void NotificationReceiver::processNotification(const TQ_KORVE_IT::struNotification &arg1)
{
    if (arg1.notification == recordRemoved)
        states->changed(
            {device, QString::fromUtf8(arg1.recordId), QString::fromUtf8(arg1.text), toClientStatus(TQ_KORVE::rsIDLE)});
}

void NotificationReceiver::processNotificationAboutSession(const TQ_KORVE_IT::struSessionNotification &arg1)
{
    states->changed(
        {device, QString::fromUtf8(arg1.recordId), QString::fromUtf8(arg1.text), toClientStatus(arg1.notification)});
}

} // namespace installation

#pragma once

#include "installation/manager/recordstates.h"

#include "idl/korve.hh"

#include <memory>

namespace installation
{

/// Takes what one recorder tells of its records and its self-test.
class NotificationReceiver : public POA_TQ_KORVE_IT::IF_Korve_IT
{
public:
    NotificationReceiver(QString device, std::shared_ptr<RecordStates> states);

    /// Only traced.
    void processBiteStateNotification(const TQ_KORVE_IT::struBiteStateNotification &arg1) override;
    /// A record that is removed is no longer busy. All else says nothing of what a record is doing.
    void processNotification(const TQ_KORVE_IT::struNotification &arg1) override;
    /// A record does something else from now on.
    void processNotificationAboutSession(const TQ_KORVE_IT::struSessionNotification &arg1) override;

private:
    const QString device;
    const std::shared_ptr<RecordStates> states;
};

} // namespace installation

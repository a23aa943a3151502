#pragma once

#include "idl/korve.hh"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// Takes notifications of a recorder, in their order, and lets a test wait for one.
class NotifiedReceiver : public POA_TQ_KORVE_IT::IF_Korve_IT
{
public:
    struct Notification {
        bool isStatus = false; ///< about a session, else about a record
        CORBA::ULongLong number = 0;
        CORBA::ULongLong timestampUs = 0;
        CORBA::ULong notification = 0;
        std::string recordId;
        std::string text;
    };

    void processBiteStateNotification(const TQ_KORVE_IT::struBiteStateNotification &) override {}
    void processNotification(const TQ_KORVE_IT::struNotification &what) override
    {
        take({false, what.number, what.timestamp, what.notification, what.recordId.in(), what.text.in()});
    }
    void processNotificationAboutSession(const TQ_KORVE_IT::struSessionNotification &what) override
    {
        take({true, what.number, what.timestamp, what.notification, what.recordId.in(), what.text.in()});
    }

    /// All so far, once the last one is such a status or change of a record, or after a minute.
    std::vector<Notification> upTo(bool isStatus, CORBA::ULong notification);
    /// The numbers of the statuses up to such a one, in their order.
    std::vector<CORBA::ULong> statusesUpTo(CORBA::ULong last);

private:
    void take(Notification notification)
    {
        const std::scoped_lock lock(mutex);
        all.push_back(std::move(notification));
        changed.notify_all();
    }

    std::mutex mutex; // guards the member below
    std::vector<Notification> all;
    std::condition_variable changed;
};

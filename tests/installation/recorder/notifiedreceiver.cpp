#include "tests/installation/recorder/notifiedreceiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

std::vector<NotifiedReceiver::Notification> NotifiedReceiver::upTo(bool isStatus, CORBA::ULong notification)
{
    const auto isMeant = [=](const Notification &one) {
        return one.isStatus == isStatus && one.notification == notification;
    };
    std::unique_lock lock(mutex);
    EXPECT_TRUE(changed.wait_for(lock, std::chrono::minutes(1), [&] { return std::ranges::any_of(all, isMeant); }))
        << "no notification " << notification;
    const auto found = std::ranges::find_if(all, isMeant);
    return {all.begin(), found == all.end() ? found : found + 1};
}

std::vector<CORBA::ULong> NotifiedReceiver::statusesUpTo(CORBA::ULong last)
{
    std::vector<CORBA::ULong> statuses;
    for (const Notification &one : upTo(true, last))
        if (one.isStatus)
            statuses.push_back(one.notification);
    return statuses;
}

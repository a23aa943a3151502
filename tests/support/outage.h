#pragma once

#include "tests/support/patience.h"
#include "tests/support/serviceprocess.h"

/// A service stands still while this lives, but goes on after @p longest.
class Outage
{
public:
    explicit Outage(ServiceProcess &service, std::chrono::seconds longest = std::chrono::seconds(20))
        : service(service), patience(longest, [&service] { service.resume(); })
    {
        service.suspend();
    }
    Outage(const Outage &) = delete;
    ~Outage()
    {
        patience.end();
        service.resume();
    }

    /// Whether nobody has waited for its end.
    bool lasts() const { return !patience.isOver(); }

private:
    ServiceProcess &service;
    Patience patience;
};

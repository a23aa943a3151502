#pragma once

#include "tests/installation/manager/fakesessions.h"

#include "installation/calls/activation.h"

#include <QString>

#include <list>

/// A recorder of records in memory whose sessions send and pretend to record.
class SessionRecorder
{
public:
    /// Serves under @p key.
    explicit SessionRecorder(const std::string &key);
    ~SessionRecorder();

    TQ_KORVE::IF_Control_ptr reference() const;
    /// As if it had gone, with all its sessions.
    void vanish();
    std::shared_ptr<FakeRecord> add(const std::string &recordId);
    /// Null for an unknown one.
    std::shared_ptr<FakeRecord> record(const std::string &recordId) const;

    /// Sources are not reached from now on, and nobody says why.
    void refuseConnections();

    const std::shared_ptr<Trouble> trouble = std::make_shared<Trouble>();

private:
    class Control;

    Control *const control; ///< counted by the ORB
    std::unique_ptr<installation::Activation> activation;
};

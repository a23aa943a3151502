#pragma once

#include "apps/korvectl/centralservice.h"

#include "objectmodel/korve_recorddata.h"

#include <QStringList>
#include <QVector>

#include <memory>

namespace KorveCommon
{
class AbstractServerConnectionData;
}

namespace KorveGUI
{
class KorveGuiToServerCorbaHandler;
}

namespace korvectl
{

/// What a manager says of one recorder device.
struct DeviceState {
    QString id;
    QString address;
    QString firmware;
    bool isAvailable;
};

/// The recorder manager of one subsystem, found by way of the central object service, and what it answers.
///
/// Makes no connection to the value tree unless told to, as long as no event loop runs: the library would in one.
/// Thread: main; each call blocks, at most for the time-out for each answer.  Errors: throws Failure.
class ManagerSession
{
public:
    using Records = QVector<KORVE_XML::KORVE_RecordData>;

    /// Waits for the services, which may be just starting. An empty @p subsystem is the local one. @p service is for
    /// the length of this call.
    ManagerSession(const CentralService &service, const QString &subsystem, std::chrono::milliseconds timeout);
    ~ManagerSession();

    /// Never empty.
    const QString &subsystem() const;
    /// Makes the connections to the manager's value tree, by whose signals it can be followed, and keeps them for the
    /// life of the session, which owns the result. They need the event loop; while they are down, nothing can be asked.
    KorveCommon::AbstractServerConnectionData &holdTreeConnections();

    /// For the handlers of commands; it is connected.
    const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> &handler() const;

    /// Sorted.
    QStringList deviceIds() const;
    DeviceState device(const QString &id) const;
    /// In the order of their beginning.
    Records records(const QString &deviceId) const;

private:
    QString reasonOfRefusal(const QString &deviceId) const;

    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace korvectl

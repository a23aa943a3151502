#pragma once

#include "apps/korvectl/centralservice.h"

#include "orbconnection/vtconnectdata.h"

#include <functional>
#include <optional>

namespace korvectl
{

/// One step of the way from here to the devices.
struct Link {
    QString name;
    QString address; ///< "HOST:PORT"; empty while nobody has said it
    std::chrono::microseconds elapsed{0};
    QString finding;   ///< a few words on what is there
    QString complaint; ///< a sentence, where the link is broken, else empty
    QString remedy;    ///< what to do then, a sentence

    bool isSound() const { return complaint.isEmpty(); }
};

/// Goes the way from here to the devices, link by link, up to the first that is broken.
///
/// Each link has the time-out for itself, since what is just starting is not broken.
/// Thread: main; blocks.
class Doctor
{
public:
    using Tell = std::function<void(const Link &)>;

    /// Borrows @p service; hands each link to @p tell as soon as it is known. An empty @p subsystem is the local one.
    Doctor(const CentralService &service, const QString &subsystem, std::chrono::milliseconds timeout, Tell tell);
    ~Doctor();

    /// True when no link is broken.
    bool examine();

private:
    /// Fills in what it finds. True as soon as the link is sound; it is asked again until the deadline.
    using Look = std::function<bool(Link &, std::chrono::milliseconds left)>;

    bool check(const QString &name, const QString &address, const Look &look);
    bool checkCentralService();
    bool checkManager();
    bool askManager(Link &link, std::chrono::milliseconds left);
    bool checkTree();
    bool checkDevices();
    bool checkRecorder(const QString &device);
    bool askRecorder(const QString &device, Link &link, std::chrono::milliseconds left);
    bool checkStorage(const QString &device);
    bool checkFiles(const QString &device);
    bool checkDevice(const QString &device);
    bool checkNames();
    QString holderOf(const QString &path, std::chrono::milliseconds left) const;

    const CentralService &service;
    const std::chrono::milliseconds timeout;
    const Tell tell;
    QString subsystem;
    TQ_KRV::IF_KRV_c_KRV_var manager;
    QString managerAddress;
    QString recorderAddress; ///< of the one that was found last
    QString workstation;
    QStringList devices;
};

} // namespace korvectl

#pragma once

#include <QMap>
#include <QString>

namespace installation
{

/// The devices that a manager has seen, with their last addresses, in the SQLite file `devices.sqlite` of its folder.
///
/// A file that is damaged or not ours is traced, put aside as `devices.sqlite.refused`, and begun anew: devices that
/// are still there are found again.
/// Thread: any, one at a time; blocks for the disk.  Errors: throws std::runtime_error that names file and reason.
class KnownDevices
{
public:
    using AddressById = QMap<QString, QString>;

    /// Makes folder and file if they are missing.
    explicit KnownDevices(const QString &folder);

    AddressById load() const;
    /// Returns when it is on the disk; an end of the process before that leaves what was there.
    void save(const AddressById &devices) const;

private:
    const QString path;
};

} // namespace installation

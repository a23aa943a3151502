#pragma once

#include "korvebase/korvebase_export.h"

#include "coresupport/charstream.h"

#include <QHashFunctions>
#include <QString>

namespace korve
{

/// Addresses a record: the subsystem, which may be empty, the recorder device there, and the record on that device.
///
/// A value; without meaning until it is valid().
class KORVEBASE_EXPORT RecordIdentifier
{
public:
    RecordIdentifier() : RecordIdentifier(QString(), QString()) {}
    RecordIdentifier(const QString &deviceID, const QString &recordID) : RecordIdentifier(QString(), deviceID, recordID)
    {
    }
    RecordIdentifier(const QString &subSystem, const QString &deviceID, const QString &recordID)
        : hash(static_cast<int>(::qHash(recordID, 0))), subSystemName(subSystem), device(deviceID), record(recordID)
    {
    }

    QString subSystem() const { return subSystemName; }
    QString deviceID() const { return device; }
    QString recordID() const { return record; }
    /// Of the record's identifier alone.
    int hashValue() const { return hash; }
    /// Device and record are named.
    bool valid() const { return !device.isEmpty() && !record.isEmpty(); }
    /// "record@subsystem/device", or "record@device"; "[invalid]" when it is not valid().
    QString toString() const;

    bool operator==(const RecordIdentifier &other) const
    {
        return hash == other.hash && record == other.record && device == other.device &&
               subSystemName == other.subSystemName;
    }
    bool operator!=(const RecordIdentifier &other) const { return !(*this == other); }
    /// contract: true when any of the three is less, so that each of two can be less than the other. It orders
    /// identifiers that differ in one of the three.
    bool operator<(const RecordIdentifier &other) const
    {
        return subSystemName < other.subSystemName || device < other.device || record < other.record;
    }

private:
    friend class IdentifierIndex; // reads the texts without a copy of each

    int hash;
    QString subSystemName;
    QString device;
    QString record;
};

inline uint qHash(const RecordIdentifier &identifier)
{
    return static_cast<uint>(identifier.hashValue());
}

} // namespace korve

namespace Ulma
{

/// A char-stream block of the three texts as QDataStream writes them: subsystem, device, record.
template <> struct KORVEBASE_EXPORT CharStreamForm<korve::RecordIdentifier> {
    static void write(std::string &out, const korve::RecordIdentifier &value);
    static bool read(CharStreamReader &in, korve::RecordIdentifier &value);
};

} // namespace Ulma

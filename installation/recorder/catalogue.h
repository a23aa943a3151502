#pragma once

#include "installation/recorder/recordfolder.h"

#include <QHash>
#include <QVariant>

#include <stdexcept>

class QSqlQuery;

namespace installation::recorder
{

/// The index over the records' files, in SQLite: what a list of records needs, without reading the files.
///
/// It holds nothing that the files do not hold. A file that is no catalogue of this version is replaced, and where none
/// can be written the catalogue lives in memory.
/// Thread: the store's, from construction to the end.  Errors: throws Error; a new catalogue is the remedy.
class Catalogue
{
public:
    class Error : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };

    /// Removes the files of the catalogue @p path.
    static void discard(const QString &path);
    static QString inMemory() { return QStringLiteral(":memory:"); }

    /// @throws RecorderError when Qt has no SQLite at all.
    explicit Catalogue(const QString &path);
    ~Catalogue();
    Catalogue(const Catalogue &) = delete;

    void put(const RecordSummary &record, const RecordFolder::Stamp &stamp);
    void remove(const QString &id);
    /// All changes until commit() take effect together.
    void begin();
    void commit();

    QHash<QString, RecordFolder::Stamp> stamps() const;
    /// By start time, then id.
    QVector<RecordSummary> records() const;
    bool contains(const QString &id) const;

private:
    bool open(const QString &path);
    bool prepareTables();
    QSqlQuery execute(const QString &statement, const QVariantList &values = {}) const;

    const QString connection;
};

} // namespace installation::recorder

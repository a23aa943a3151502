#pragma once

#include "apps/korvectl/exportfolder.h"
#include "apps/korvectl/filereceiver.h"
#include "apps/korvectl/ownaddress.h"

#include <QStringList>
#include <QVector>

#include <memory>

namespace korvectl
{

struct ExportedFile {
    QString name;
    quint64 size = 0;
    quint64 begin = 0; ///< how much was there before
    bool isWhole = false;
};

/// What a manager tells of an export, and what becomes of the files meanwhile.
///
/// Samples that are there already are compared with the checksum that the description of the record tells; without one
/// they are fetched from their beginning.
/// Thread: main.  Errors: none leaves but as the end of the export.
class ExportRun : public QObject
{
    Q_OBJECT
public:
    /// How files get here.
    struct Way {
        OwnAddress address;
        SenderHost sender;
        std::chrono::milliseconds patience; ///< for what is on its way
    };
    enum class Resume { WhereItEnded, FromTheBeginning };

    /// Borrows @p folder.
    ExportRun(const ExportFolder &folder, const Way &way, Resume resume = Resume::WhereItEnded)
        : folder(folder), way(way), resume(resume)
    {
    }

    // As the manager calls them, in their order.
    void setFiles(const QStringList &names);
    /// Where the device is to send the file: "HOST:PORT/OFFSET"; empty when it is not wanted.
    QString beginFile(const QString &name, quint64 size);
    void endFile(const QString &name, bool isSuccess);
    void end(bool isSuccess, const QString &text);

    bool isOver() const { return over; }
    /// Whether it has failed because what was there before is of other samples, so that all are to be fetched anew.
    bool beganWrong() const { return hasWrongBeginning; }
    /// Why it has failed; empty when all that was announced is there.
    QString complaint() const;
    const QVector<ExportedFile> &files() const { return exported; }

Q_SIGNALS:
    /// Something has come.
    void si_alive();
    void si_progress(const QString &name, quint64 received, quint64 size);
    void si_over();

private:
    ExportedFile &file(const QString &name);
    std::optional<quint64> bytesThere(const QString &name, quint64 size) const;
    void finish(ExportedFile &file);
    bool isOfTheRecord(const QString &path, const ExportedFile &file);
    void fail(const QString &sentence);
    /// Fails for a reason of this side; what others say afterwards, such as of a connection that was closed here, is none.
    void failHere(const QString &sentence);

    const ExportFolder &folder;
    const Way way;
    const Resume resume;
    QByteArray checksum; ///< of the samples; empty as long as none is told
    QStringList announced;
    QVector<ExportedFile> exported;
    std::unique_ptr<FileReceiver> receiver;
    QString reason;
    bool hasFailedHere = false;
    bool hasWrongBeginning = false;
    bool over = false;
};

} // namespace korvectl

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
/// Thread: main.  Errors: none leaves but as the end of the export.
class ExportRun : public QObject
{
    Q_OBJECT
public:
    /// Borrows @p folder. Waits for what is on its way at most for @p patience.
    ExportRun(const ExportFolder &folder, const OwnAddress &address, std::chrono::milliseconds patience)
        : folder(folder), address(address), patience(patience)
    {
    }

    // As the manager calls them, in their order.
    void setFiles(const QStringList &names);
    /// Where the device is to send the file: "HOST:PORT/OFFSET"; empty when it is not wanted.
    QString beginFile(const QString &name, quint64 size);
    void endFile(const QString &name, bool isSuccess);
    void end(bool isSuccess, const QString &text);

    bool isOver() const { return over; }
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
    void fail(const QString &sentence);
    /// As above; what others say of it afterwards, such as of a connection that was closed here, is no reason.
    void failHere(const QString &sentence);

    const ExportFolder &folder;
    const OwnAddress address;
    const std::chrono::milliseconds patience;
    QStringList announced;
    QVector<ExportedFile> exported;
    std::unique_ptr<FileReceiver> receiver;
    QString reason;
    bool hasFailedHere = false;
    bool over = false;
};

} // namespace korvectl

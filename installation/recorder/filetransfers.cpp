#include "installation/recorder/filetransfers.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"

#include <future>
#include <list>
#include <mutex>
#include <optional>

namespace installation::recorder
{

namespace
{

RecordFile fileNamed(const QVector<RecordFile> &files, const QString &name)
{
    for (const RecordFile &file : files)
        if (file.name == name)
            return file;
    throw RecorderError(TQ_KORVE::ekINVALID_VALUE, QStringLiteral("the record has no file \"%1\"").arg(name));
}

/// What is left of @p file from the offset on.
quint64 remaining(const File &file, const TransferTarget &target)
{
    const auto sizeBytes = static_cast<quint64>(file.status().st_size);
    if (sizeBytes != target.sizeBytes)
        throw RecorderError(TQ_KORVE::ekRECORD_ACCESS_FAILED, QStringLiteral("the record has changed"));
    if (target.offset > sizeBytes)
        throw RecorderError(TQ_KORVE::ekINVALID_VALUE,
                            QStringLiteral("the offset %1 lies behind the %2 bytes of the file")
                                .arg(QString::number(target.offset), QString::number(sizeBytes)));
    return sizeBytes - target.offset;
}

} // namespace

/// The transfers that go on.
class FileTransfers::UnderWay : public std::enable_shared_from_this<UnderWay>
{
public:
    /// It is listed for as long as the answer lives.
    std::shared_ptr<void> add(const QString &recordId, const RecordFile &transfer)
    {
        const std::scoped_lock lock(mutex);
        const auto place = all.insert(all.end(), {recordId, transfer});
        return {nullptr, [self = shared_from_this(), place](void *) {
                    const std::scoped_lock lock(self->mutex);
                    self->all.erase(place);
                }};
    }
    QVector<RecordFile> of(const QString &recordId) const
    {
        const std::scoped_lock lock(mutex);
        QVector<RecordFile> found;
        for (const auto &[record, transfer] : all)
            if (record == recordId)
                found.append(transfer);
        return found;
    }

private:
    mutable std::mutex mutex;
    std::list<std::pair<QString, RecordFile>> all;
};

struct FileTransfers::Transfer {
    explicit Transfer(File file) : file(std::move(file)) {}

    const File file;
    quint64 offset = 0;
    quint64 count = 0;
    std::optional<OutgoingConnection> connection;
    std::shared_ptr<void> listed;
};

FileTransfers::FileTransfers(std::shared_ptr<StoreThread> store, const OutgoingConnection::Timing &timing)
    : store(std::move(store)), timing(timing), underWay(std::make_shared<UnderWay>()),
      jobs(QStringLiteral("transfers"), maximumTransfers)
{
}

QVector<RecordFile> FileTransfers::list(const QString &archiveDevice) const
{
    const TransferListing wanted = TransferListing::ofText(archiveDevice);
    if (wanted.isOfTransfers)
        return underWay->of(wanted.recordId);
    return store->ask([id = wanted.recordId](RecordStore &records) { return records.files(id); });
}

std::shared_ptr<FileTransfers::Transfer> FileTransfers::open(const QString &recordId,
                                                             const TransferTarget &target) const
{
    const auto files = store->ask([recordId](RecordStore &records) { return records.files(recordId); });
    const auto transfer = std::make_shared<Transfer>(File::openForReading(fileNamed(files, target.fileName).path));
    transfer->offset = target.offset;
    transfer->count = remaining(transfer->file, target);
    return transfer;
}

void FileTransfers::start(const QString &recordId, const QString &url, const Ended &ended)
{
    const TransferTarget target = TransferTarget::ofUrl(url);
    Jobs::Place place = jobs.takePlace();
    const std::shared_ptr<Transfer> transfer = open(recordId, target);
    transfer->connection.emplace(target.host, target.port, jobs.stopToken(), timing);
    transfer->listed = underWay->add(recordId, {url, {}, transfer->count});
    jobs.start(std::move(place), [transfer, ended](const std::stop_token &) {
        QString failure;
        try {
            transfer->connection->sendFile(transfer->file, transfer->offset, transfer->count);
            transfer->connection->finish();
        } catch (const std::exception &error) { // whatever it is, somebody waits for the end of it
            failure = QString::fromUtf8(error.what());
        }
        transfer->connection.reset();
        ended(failure);
        transfer->listed.reset();
    });
}

void FileTransfers::send(const QString &recordId, const QString &url)
{
    const auto outcome = std::make_shared<std::promise<QString>>();
    start(recordId, url, [outcome](const QString &failure) { outcome->set_value(failure); });
    const QString failure = outcome->get_future().get();
    if (!failure.isEmpty())
        throw RecorderError(TQ_KORVE::ekNETWORK_FAILURE, failure);
}

} // namespace installation::recorder

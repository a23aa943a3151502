#pragma once

#include "installation/calls/servedobjects.h"
#include "installation/manager/devicedirectory.h"
#include "installation/manager/exportorder.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/manager/transfer.h"

#include <QVector>

#include <atomic>
#include <optional>

namespace installation
{

/// One export: tells the exporter what files the record has, asks it for each where it is to go, has the recorder send
/// it there, and says how it went. The recorder tells the end of each file; it is also asked now and then whether it
/// still sends, so that an end that was not told does not keep the export for good.
///
/// It ends with the first file that fails. A file that the exporter does not want is passed over. An exporter that does
/// not answer three times in a row, a recorder that has restarted or is silent for the export's silence limit, and
/// cancel() end it too; the recorder notices the end by the exporter's closing the connection.
class Export
{
public:
    /// The receiver for the recorder is served among @p objects.
    Export(ExportOrder order, const ServedObjects &objects, std::shared_ptr<const DeviceDirectory> directory,
           const ManagerConfiguration::Timing &timing);

    const QString &id() const { return order.id; }
    /// Returns at the end of the export. Thread: one of its own.  Errors: traced, and told to the exporter.
    void run();
    /// Does not wait. Thread: any.
    void cancel() { transfer->cancel(); }
    /// From just before its end is told: whoever hears of that may begin it anew. Thread: any.
    bool isOver() const { return over; }

private:
    struct File {
        QString name;
        quint64 size = 0;
    };

    /// How long what is wrong has lasted, while a file is being sent.
    struct Patience {
        using Clock = std::chrono::steady_clock;

        Clock::time_point recorderSeen = Clock::now();
        std::optional<Clock::time_point> overSince{}; ///< the recorder sends no more
        int exporterSilences = 0;
    };

    void exportFiles();
    QVector<File> files() const;
    void tellFiles(const QVector<File> &files) const;
    void send(const File &file);
    void transferTo(const StreamAddress &address, const File &file);
    void waitForEnd(const Device &device, const QByteArray &destination);
    void checkRecorder(const Device &device, const QByteArray &destination, Patience &patience) const;
    bool isOver(const Device &device, const QByteArray &destination) const;
    void checkExporter(Patience &patience) const;
    Device recorderNow() const;
    void finish(bool success, const QString &text);
    template <typename Call> void tell(const char *what, Call call) const;

    const ExportOrder order;
    const std::shared_ptr<const DeviceDirectory> directory;
    const ManagerConfiguration::Timing timing;
    const std::shared_ptr<Transfer> transfer;
    const std::shared_ptr<Activation> receiver;
    std::atomic<bool> over = false;
};

} // namespace installation

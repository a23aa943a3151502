#pragma once

#include "installation/cco/activation.h"
#include "installation/manager/devicedirectory.h"
#include "installation/manager/exportorder.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/manager/transfer.h"

#include <QVector>

namespace installation
{

/// One export: tells the exporter what files the record has, asks it for each where it is to go, has the recorder send
/// it there, and says how it went.
///
/// It ends with the first file that fails. A file that the exporter does not want is passed over. An exporter that does
/// not answer three times in a row, a recorder that has restarted or is silent for the export's silence limit, and
/// cancel() end it too; the recorder notices the end by the exporter's closing the connection.
class Export
{
public:
    /// The receiver for the recorder is an object of @p poa.
    Export(ExportOrder order, PortableServer::POA_ptr poa, std::shared_ptr<const DeviceDirectory> directory,
           const ManagerConfiguration::Timing &timing);

    const QString &id() const { return order.id; }
    /// Returns at the end of the export. Thread: one of its own.  Errors: traced, and told to the exporter.
    void run();
    /// Does not wait. Thread: any.
    void cancel() { transfer->cancel(); }

private:
    struct File {
        QString name;
        quint64 size = 0;
    };

    void exportFiles();
    QVector<File> files() const;
    void tellFiles(const QVector<File> &files) const;
    void send(const File &file);
    void transferTo(const StreamAddress &address, const File &file);
    void waitForEnd(const Device &device);
    bool exporterAnswers() const;
    Device recorderNow() const;
    void finish(bool success, const QString &text) const;

    const ExportOrder order;
    const std::shared_ptr<const DeviceDirectory> directory;
    const ManagerConfiguration::Timing timing;
    const std::shared_ptr<Transfer> transfer;
    const Activation receiver;
};

} // namespace installation

#pragma once

#include "installation/recorder/recordfolder.h"
#include "installation/recorder/recordimport.h"

#include <omniORB4/CORBA.h>

#include <QString>

#include <chrono>
#include <memory>
#include <string>

namespace installation::recorder
{

struct RecorderConfiguration {
    QString statePath; ///< folder of the records and the catalogue
    QString deviceId{}; ///< kept there; empty: no other than what is kept
    std::string objectKey = "IF_Control";
    std::string firmwareVersion = "KRV#R100#0.1_0.1";
    std::chrono::milliseconds answerLimit{6000}; ///< below the 8 s that managers wait, so that they hear why it failed
    QString linkAddress = QStringLiteral("127.0.0.1");          ///< where links of sessions listen, by IPv4
    QString publishedLinkAddress = QStringLiteral("127.0.0.1"); ///< where others find them
};

/// One recorder device: its records in a folder, its store thread, and the object that answers for it.
///
/// Thread: any; needs no main thread.
class RecorderService
{
public:
    /// Starts to serve. @p poa lets its user choose the keys, its manager is activated by the caller, and the ORB
    /// outlives the service.
    /// @throws RecorderError when the folder cannot be used, or an address is none.
    RecorderService(const RecorderConfiguration &configuration, PortableServer::POA_ptr poa);
    /// As stop().
    ~RecorderService();
    RecorderService(const RecorderService &) = delete;

    /// Refuses new calls, ends long work, waits for the calls in progress as ServedObjects does, and then ends all
    /// threads, completes recordings and closes the files. Nothing is served any more.
    void stop();

    /// A full reference to the device's `TQ_KORVE::IF_Control`; the caller releases it.
    CORBA::Object_ptr reference() const;
    /// See importFile().
    QString importFile(const QString &path, const ImportControl &control = {});
    /// The files in the recorder's folder that are no records, or damaged ones.
    /// @throws RecorderError when the store takes too long.
    QVector<RefusedFile> refusedFiles() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace installation::recorder

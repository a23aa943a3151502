#pragma once

#include "idl/korvemanager.hh"

#include <QPointer>
#include <QString>

#include <memory>

namespace ThreadingHelper
{
class ThreadSwitchingHandler;
}

namespace korvectl
{

class ExportRun;

/// What a manager calls during an export: hands it all to an ExportRun on the main thread.
///
/// Thread: the ORB's; waits for the main thread at most a few seconds.
class ExportServant : public POA_TQ_KRV::IF_ExportCallback, public PortableServer::RefCountServantBase
{
public:
    /// Borrows @p run; once that has gone, no file is wanted any more.
    ExportServant(ExportRun &run, const QString &device, const QString &record);

    /// The id has five fields, as managers take it apart.
    const QString &id() const { return exportId; }

    char *exportID() override;
    char *deviceID() override;
    char *recordID() override;
    void exportStarted() override;
    void exportFileList(const TQ_KRV::seqString &files) override;
    void exportFinished(CORBA::Boolean success, const char *text) override;
    char *startFileStream(const char *fileName, CORBA::ULongLong size) override;
    void fileStreamFinished(const char *fileName, CORBA::Boolean success) override;

private:
    template <typename Call> void post(Call call);

    const std::shared_ptr<ThreadingHelper::ThreadSwitchingHandler> door;
    const QPointer<ExportRun> run; ///< looked at on the main thread only
    const QString device;
    const QString record;
    const QString exportId;
};

} // namespace korvectl

#include "apps/korvectl/exportservant.h"

#include "apps/korvectl/exportrun.h"

#include "appruntime/threadswitchingadministration.h"

#include <QUuid>

#include <future>

namespace korvectl
{

namespace
{

constexpr const char *sourceName = "apps/korvectl/exportservant";

char *latin1(const QString &text)
{
    return CORBA::string_dup(text.toLatin1().constData());
}

} // namespace

ExportServant::ExportServant(ExportRun &run, const QString &device, const QString &record)
    : door(ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QLatin1String(sourceName))),
      run(&run), device(device), record(record),
      exportId(QStringList{device, record, QUuid::createUuid().toString(QUuid::WithoutBraces),
                           QStringLiteral("korvectl"), QStringLiteral("1")}
                   .join(u'@'))
{
}

char *ExportServant::exportID()
{
    return latin1(exportId);
}

char *ExportServant::deviceID()
{
    return latin1(device);
}

char *ExportServant::recordID()
{
    return latin1(record);
}

template <typename Call> void ExportServant::post(Call call)
{
    door->post(ThreadingHelper::RunInMainThreadEvent([run = run, call] {
        if (run)
            call(*run);
    }));
}

void ExportServant::exportStarted()
{
    post([](ExportRun &run) { Q_EMIT run.si_alive(); });
}

void ExportServant::exportFileList(const TQ_KRV::seqString &files)
{
    QStringList names;
    for (CORBA::ULong position = 0; position < files.length(); ++position)
        names << QString::fromUtf8(files[position]);
    post([names](ExportRun &run) { run.setFiles(names); });
}

void ExportServant::exportFinished(CORBA::Boolean success, const char *text)
{
    post([success, words = QString::fromUtf8(text)](ExportRun &run) { run.end(success, words); });
}

char *ExportServant::startFileStream(const char *fileName, CORBA::ULongLong size)
{
    constexpr std::chrono::seconds patience{5}; // the main thread may be ending
    const auto address = std::make_shared<std::promise<QString>>();
    std::future<QString> told = address->get_future();
    post([address, name = QString::fromUtf8(fileName), size](ExportRun &run) {
        address->set_value(run.beginFile(name, size));
    });
    const bool isTold = told.wait_for(patience) == std::future_status::ready;
    return latin1(isTold ? told.get() : QString());
}

void ExportServant::fileStreamFinished(const char *fileName, CORBA::Boolean success)
{
    post([name = QString::fromUtf8(fileName), success](ExportRun &run) { run.endFile(name, success); });
}

} // namespace korvectl

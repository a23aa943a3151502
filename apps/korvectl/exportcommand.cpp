#include "apps/korvectl/exportcommand.h"

#include "apps/korvectl/activation.h"
#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/exportrun.h"
#include "apps/korvectl/exportservant.h"
#include "apps/korvectl/interruption.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/progressline.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/units.h"

#include "connectionmanagement/guitoserverexportcorbahandler.h"

#include <QEventLoop>
#include <QTimer>

#include <memory>

namespace korvectl
{

namespace
{

using KorveGUI::GuiToServerExportCorbaHandler;
using ActiveExport = Activation<TQ_KRV::IF_ExportCallback, ExportServant>;

QString tableOf(const ExportFolder &folder, const QVector<ExportedFile> &files)
{
    Table table({{QStringLiteral("FILE")},
                 {QStringLiteral("SIZE"), Qt::AlignRight},
                 {QStringLiteral("FETCHED"), Qt::AlignRight}});
    for (const ExportedFile &file : files)
        table.addRow({folder.path(file.name), units::bytes(file.size), units::bytes(file.size - file.begin)});
    return table.text();
}

QJsonObject objectOf(const CommandLine &line, const ExportFolder &folder, const QVector<ExportedFile> &files)
{
    QJsonArray array;
    for (const ExportedFile &file : files)
        array.append(QJsonObject{{QStringLiteral("path"), folder.path(file.name)},
                                 {QStringLiteral("sizeBytes"), jsonNumber(file.size)},
                                 {QStringLiteral("fetchedBytes"), jsonNumber(file.size - file.begin)}});
    return {{QStringLiteral("device"), line.device},
            {QStringLiteral("record"), line.record},
            {QStringLiteral("files"), array}};
}

enum class Ending { Over, Interrupted, Silent };

/// Runs the event loop until then.
Ending waitFor(ExportRun &run, std::chrono::milliseconds patience)
{
    Ending ending = Ending::Over;
    QEventLoop loop;
    Interruption interruption;
    ProgressLine progress;
    QTimer silence;
    silence.setSingleShot(true);
    silence.start(patience);
    QObject::connect(&run, &ExportRun::si_alive, &silence, [&silence] { silence.start(); });
    QObject::connect(&run, &ExportRun::si_progress, &loop,
                     [&](const QString &name, quint64 received, quint64 size) { progress.show(name, received, size); });
    QObject::connect(&run, &ExportRun::si_over, &loop, &QEventLoop::quit);
    const auto endAs = [&](Ending reason) {
        return [&ending, &loop, reason] {
            ending = reason;
            loop.quit();
        };
    };
    QObject::connect(&interruption, &Interruption::si_interrupted, &loop, endAs(Ending::Interrupted));
    QObject::connect(&silence, &QTimer::timeout, &loop, endAs(Ending::Silent));
    if (!run.isOver())
        loop.exec();
    return run.isOver() ? Ending::Over : ending;
}

[[noreturn]] void failWith(const CommandLine &line, const QString &sentence, ExitCode exitCode = ExitCode::Failed)
{
    const QStringList again{QStringLiteral("export"), line.device, line.record, QStringLiteral("--to"),
                            line.folder.isEmpty() ? QStringLiteral(".") : line.folder};
    throw Failure(exitCode, QStringLiteral("%1 What is there is kept; to go on from there: %2")
                                        .arg(sentence, commandText(line, again)));
}

[[noreturn]] void failToStart(const CommandLine &line, const QString &words, bool outcomeIsUnknown)
{
    if (!outcomeIsUnknown)
        failWith(line, QStringLiteral("The manager refused the %1, or was not there; -v shows why.").arg(words));
    failWith(line,
             QStringLiteral("The outcome of the %1 is unknown: the connection was lost after it was asked for, or the answer "
                            "did not come in time.")
                 .arg(words),
             ExitCode::Unknown);
}

void perform(const CommandLine &line, const GuiToServerExportCorbaHandler &handler, ExportRun &run)
{
    const QString words = QStringLiteral("export of record %1 on %2").arg(line.record, line.device);
    ActiveExport callback(new ExportServant(run, line.device, line.record));
    bool outcomeIsUnknown = false;
    if (!handler.exportRecord(callback.reference(), &outcomeIsUnknown))
        failToStart(line, words, outcomeIsUnknown);
    const Ending ending = waitFor(run, line.timeout);
    if (ending == Ending::Over)
        return;
    handler.cancelExport(callback->id());
    failWith(line, ending == Ending::Interrupted
                       ? QStringLiteral("The %1 was interrupted.").arg(words)
                       : QStringLiteral("Nothing more came of the %1 %2.").arg(words, Deadline(line.timeout).words()));
}

} // namespace

ExitCode exportRecord(const CommandLine &line)
{
    AdminSession admin(line);
    admin.record(); // for the reason, if there is none
    const ExportFolder folder(line.folder);
    const ExportRun::Way way{OwnAddress::ofReferences(), SenderHost(admin.manager().device(line.device).address),
                             line.timeout};
    const GuiToServerExportCorbaHandler handler(admin.manager().handler());
    auto run = std::make_unique<ExportRun>(folder, way);
    perform(line, handler, *run);
    if (run->beganWrong()) {
        run = std::make_unique<ExportRun>(folder, way, ExportRun::Resume::FromTheBeginning);
        perform(line, handler, *run);
    }
    if (!run->complaint().isEmpty())
        failWith(line, run->complaint());
    print(line.json ? jsonText(objectOf(line, folder, run->files())) : tableOf(folder, run->files()));
    return ExitCode::Success;
}

} // namespace korvectl

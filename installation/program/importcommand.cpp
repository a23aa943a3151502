#include "installation/program/importcommand.h"

#include "installation/program/import.hh"
#include "installation/program/progressbar.h"

#include "orbconnection/orbhandler.h"
#include "programs/printable.h"

#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <system_error>
#include <thread>

using CorbaCommon::OrbHandler;
using KORVE_INSTALLATION::IF_Import;

namespace installation
{

namespace
{

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void interrupt(int)
{
    interrupted = true;
}

/// Prints text that may come from another machine, such as the name of a file or what a recorder says of it.
void say(std::ostream &where, const QString &text)
{
    where << programs::printable(text).toStdString() << std::endl;
}

/// Nil when it is not registered now. Throws what the ORB raises when the central service does not answer.
IF_Import::_ptr_type importerOf(const QString &device)
{
    const QByteArray path = "KorveRecorder/" + device.toUtf8() + "/IF_Import";
    const CCO::IF_CCO_c_var service = OrbHandler::Instance().centralService(std::chrono::seconds(2));
    const CORBA::Object_var object = service->Resolve(path.constData(), CCO::rtInstallation);
    return IF_Import::_narrow(object);
}

/// Repeated, since it may just be starting. Nil, after having said why, when there is none.
IF_Import::_ptr_type waitForImporterOf(const QString &device, std::chrono::milliseconds patience)
{
    constexpr std::chrono::milliseconds pause{100};
    const auto end = std::chrono::steady_clock::now() + patience;
    QString reason;
    do {
        try {
            IF_Import::_var_type importer = importerOf(device);
            if (!CORBA::is_nil(importer))
                return importer._retn();
            reason = QStringLiteral("it has no recorder %1").arg(device);
        } catch (const CORBA::Exception &error) {
            reason = QStringLiteral("it does not answer (%1)").arg(QLatin1String(error._name()));
        }
        std::this_thread::sleep_for(pause);
    } while (!interrupted && std::chrono::steady_clock::now() < end);
    say(std::cerr, QStringLiteral("Central object service at %1: %2. Is `korve-installation --role recorder` running?")
                       .arg(OrbHandler::Instance().settings().centralService, reason));
    return IF_Import::_nil();
}

/// The id of the record. Throws exImport with the reason when there is none.
QString importOne(IF_Import::_ptr_type importer, const QFileInfo &file)
{
    const CORBA::String_var id = importer->begin(file.absoluteFilePath().toUtf8().constData());
    ProgressBar bar(programs::printable(file.fileName()));
    while (true) {
        if (interrupted)
            importer->cancel(id);
        const KORVE_INSTALLATION::struImportState_var state = importer->await(id);
        bar.show(state->doneBytes, state->totalBytes);
        if (!state->finished)
            continue;
        if (*state->failure)
            throw KORVE_INSTALLATION::exImport(state->failure);
        return QString::fromUtf8(state->recordId);
    }
}

/// Tells which record it has become. Why that could not be written; empty when it was, or nobody reads it any more.
QString tellRecord(const QString &name, const QString &recordId)
{
    errno = 0;
    say(std::cout, QStringLiteral("%1: %2").arg(name, recordId));
    if (std::cout || errno == EPIPE)
        return {};
    std::cout.clear();
    return QStringLiteral("Imported, but this could not be written: %1: %2: %3")
        .arg(name, recordId, QString::fromStdString(std::generic_category().message(errno)));
}

/// Why it was not imported, or not told, in a sentence that names it once; empty when all went well.
QString tryImport(IF_Import::_ptr_type importer, const QByteArray &typed)
{
    const QString name = QString::fromUtf8(typed);
    const QFileInfo file(name);
    QString reason;
    try {
        if (name.toUtf8() != typed)
            throw KORVE_INSTALLATION::exImport("its name is not UTF-8");
        return tellRecord(name, importOne(importer, file));
    } catch (const KORVE_INSTALLATION::exImport &refusal) {
        reason = QString::fromUtf8(refusal.text);
    } catch (const CORBA::Exception &error) {
        reason = QStringLiteral("the recorder does not answer: %1").arg(QLatin1String(error._name()));
    }
    const bool namesIt = reason.contains(file.absoluteFilePath());
    return QStringLiteral("Not imported: ") + (namesIt ? reason : name + QLatin1String(": ") + reason);
}

} // namespace

int runImport(const CommandLine::Import &import, std::chrono::milliseconds patience)
{
    std::signal(SIGINT, interrupt);
    const IF_Import::_var_type importer = waitForImporterOf(import.device, patience);
    if (CORBA::is_nil(importer))
        return 2;
    int exitCode = 0;
    for (const QByteArray &file : import.files) {
        const QString failure = interrupted ? QString() : tryImport(importer, file);
        if (!failure.isEmpty())
            say(std::cerr, failure);
        if (!failure.isEmpty() || interrupted)
            exitCode = 1;
    }
    return exitCode;
}

} // namespace installation

#include "installation/program/importcommand.h"

#include "installation/program/import.hh"
#include "installation/program/progressbar.h"

#include "orbconnection/orbhandler.h"

#include <QFileInfo>

#include <atomic>
#include <csignal>
#include <iostream>
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

void say(std::ostream &where, const QString &text)
{
    where << text.toStdString() << std::endl;
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
QString importOne(IF_Import::_ptr_type importer, const QString &file)
{
    const QFileInfo info(file);
    const CORBA::String_var id = importer->begin(info.absoluteFilePath().toUtf8().constData());
    ProgressBar bar(info.fileName());
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

} // namespace

int runImport(const CommandLine::Import &import, std::chrono::milliseconds patience)
{
    std::signal(SIGINT, interrupt);
    const IF_Import::_var_type importer = waitForImporterOf(import.device, patience);
    if (CORBA::is_nil(importer))
        return 2;
    int exitCode = 0;
    for (const QString &file : import.files) {
        QString failure;
        try {
            if (!interrupted)
                say(std::cout, QStringLiteral("%1: %2").arg(file, importOne(importer, file)));
        } catch (const KORVE_INSTALLATION::exImport &refusal) {
            failure = QString::fromUtf8(refusal.text);
        } catch (const CORBA::Exception &error) {
            failure = QStringLiteral("the recorder does not answer: %1").arg(QLatin1String(error._name()));
        }
        if (!failure.isEmpty())
            say(std::cerr, QStringLiteral("%1 was not imported: %2").arg(file, failure));
        if (!failure.isEmpty() || interrupted)
            exitCode = 1;
    }
    return exitCode;
}

} // namespace installation

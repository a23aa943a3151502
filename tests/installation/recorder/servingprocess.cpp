#include "tests/installation/recorder/servingprocess.h"

#include "tests/support/waiting.h"

#include <stdexcept>

ClientOrb::ClientOrb()
{
    const char *options[][2] = {{"clientCallTimeOutPeriod", "30000"},
                                {"endPoint", "giop:tcp:127.0.0.1:"},
                                {nullptr, nullptr}};
    int none = 0;
    orb = CORBA::ORB_init(none, nullptr, "omniORB4", options);
    poa = PortableServer::POA::_narrow(CORBA::Object_var(orb->resolve_initial_references("RootPOA")));
    PortableServer::POAManager_var(poa->the_POAManager())->activate();
}

ClientOrb::~ClientOrb()
{
    orb->destroy();
}

CORBA::Object_ptr ClientOrb::object(const QByteArray &reference) const
{
    return orb->string_to_object(reference);
}

TQ_KORVE_IT::IF_Korve_IT_ptr ClientOrb::activate(POA_TQ_KORVE_IT::IF_Korve_IT &receiver)
{
    const PortableServer::ObjectId_var id = poa->activate_object(&receiver);
    return TQ_KORVE_IT::IF_Korve_IT::_narrow(CORBA::Object_var(poa->id_to_reference(id)));
}

void ClientOrb::deactivate(TQ_KORVE_IT::IF_Korve_IT_ptr receiver)
{
    poa->deactivate_object(PortableServer::ObjectId_var(poa->reference_to_id(receiver)));
}

ServingProcess::ServingProcess(const QString &statePath, const QStringList &filesToImport)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(RECORDER_PROCESS, QStringList{"serve", statePath} + filesToImport);
    QByteArray line = readLine();
    for (; line.startsWith("refused "); line = readLine())
        refusedNames.append(QString::fromUtf8(line.mid(sizeof "refused")));
    controlReference = line.mid(sizeof "ready");
}

QByteArray ServingProcess::readLine()
{
    while (!process.canReadLine())
        if (!process.waitForReadyRead(patienceMs))
            throw std::runtime_error("the recorder does not get ready");
    return process.readLine().trimmed();
}

void ServingProcess::kill()
{
    process.kill();
    process.waitForFinished(patienceMs);
}

int ServingProcess::end()
{
    process.closeWriteChannel();
    const bool isOver = process.state() == QProcess::NotRunning || process.waitForFinished(patienceMs);
    return isOver && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

ServingProcess::~ServingProcess()
{
    end();
    process.kill();
}

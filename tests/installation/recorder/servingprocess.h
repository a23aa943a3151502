#pragma once

#include "idl/korve.hh"

#include <QProcess>

/// The ORB of a test that calls other processes.
class ClientOrb
{
public:
    ClientOrb();
    ~ClientOrb();
    ClientOrb(const ClientOrb &) = delete;

    /// The caller releases it.
    CORBA::Object_ptr object(const QByteArray &reference) const;
    /// Lets others call @p receiver, until it is deactivated; the caller releases the reference.
    TQ_KORVE_IT::IF_Korve_IT_ptr activate(POA_TQ_KORVE_IT::IF_Korve_IT &receiver);
    void deactivate(TQ_KORVE_IT::IF_Korve_IT_ptr receiver);

private:
    CORBA::ORB_var orb;
    PortableServer::POA_var poa;
};

/// A recorder in a process of its own, with its records in @p statePath; ends with this object.
class ServingProcess
{
public:
    ServingProcess(const QString &statePath, const QStringList &filesToImport);
    ~ServingProcess();
    qint64 processId() const { return process.processId(); }
    /// Has the recorder end in order; its exit code, or -1 when it does not end for long.
    int end();
    /// Ends the recorder at once, whatever it does.
    void kill();

    const QByteArray &reference() const { return controlReference; }
    /// The names of the files that it refused.
    const QStringList &refused() const { return refusedNames; }

private:
    QByteArray readLine();

    QProcess process;
    QByteArray controlReference;
    QStringList refusedNames;
};

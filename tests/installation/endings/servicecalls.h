#pragma once

#include "tests/installation/endings/serviceload.h"

#include "idl/cco.hh"
#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <QString>

#include <mutex>
#include <set>

/// What services have acknowledged, collected by many threads.
class Acknowledged
{
public:
    void add(const QString &what)
    {
        const std::scoped_lock lock(mutex);
        all.insert(what);
    }
    std::set<QString> take()
    {
        const std::scoped_lock lock(mutex);
        return std::exchange(all, {});
    }

private:
    std::mutex mutex;
    std::set<QString> all;
};

/// Whom the calls go to, and what comes of them.
struct Installation {
    CCO::IF_CCO_c_var names;
    TQ_KORVE::IF_Control_var recorder;
    TQ_KRV::IF_KRV_c_KRV_var manager;
    TQ_KRV::IF_KORVE_Admin_var admin;
    QByteArray record; ///< exists, and is changed
    QByteArray file;   ///< could be imported

    CCO::Callback_var nameCallback; ///< of this process, as the next two
    TQ_KORVE_IT::IF_Korve_IT_var receiver;
    TQ_KRV::IF_ExportCallback_var exporter;

    Acknowledged entries; ///< of the history of the record
    Acknowledged records;
    Acknowledged channels;
};

/// The name of a recorder's object at the central object service.
QByteArray recorderPath(const char *object);

std::vector<ServiceLoad::Kind> callsOfCentralService(Installation &installation);
std::vector<ServiceLoad::Kind> callsOfRecorder(Installation &installation);
std::vector<ServiceLoad::Kind> callsOfManager(Installation &installation);

#include "installation/recorder/recorderservice.h"

#include "installation/calls/servedobjects.h"
#include "installation/recorder/controlservant.h"
#include "installation/recorder/deviceid.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/sessions.h"
#include "installation/recorder/storethread.h"

#include <netdb.h>
#include <netinet/in.h>

namespace installation::recorder
{

namespace
{

quint32 hostOf(const QString &address)
{
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    addrinfo *found = nullptr;
    const int failure = ::getaddrinfo(address.toLatin1().constData(), nullptr, &wanted, &found);
    if (failure != 0)
        throw RecorderError(TQ_KORVE::ekINVALID_CONFIGURATION,
                            QStringLiteral("\"%1\" has no address: %2")
                                .arg(address, QLatin1String(::gai_strerror(failure))));
    const quint32 host = ntohl(reinterpret_cast<const sockaddr_in *>(found->ai_addr)->sin_addr.s_addr);
    ::freeaddrinfo(found);
    return host;
}

std::shared_ptr<Activities> activitiesTold(const std::shared_ptr<Notifier> &notifier)
{
    return std::make_shared<Activities>([notifier](const QString &recordId, const QString &name, RecordStatus status) {
        notifier->tellStatus(recordId, name, status);
    });
}

void tellChanges(StoreThread &store, const std::shared_ptr<Notifier> &notifier)
{
    static_assert(int(RecordStore::Event::Added) == int(Notifier::Change::Added) &&
                  int(RecordStore::Event::Removed) == int(Notifier::Change::Removed) &&
                  int(RecordStore::Event::Changed) == int(Notifier::Change::Changed));
    store.ask([notifier](RecordStore &records) {
        records.observe([notifier](RecordStore::Event event, const QString &id, const QString &name) {
            notifier->tellChange(static_cast<Notifier::Change>(event), id, name);
        });
    });
}

} // namespace

class RecorderService::Private
{
public:
    Private(const RecorderConfiguration &configuration, PortableServer::POA_ptr poa)
        : store(std::make_shared<StoreThread>(configuration.statePath, configuration.answerLimit)),
          clock(std::make_shared<DeviceClock>(configuration.statePath + QLatin1String("/clock"))),
          notifier(std::make_shared<Notifier>([clock = clock] { return clock->nowUs(); })),
          activities(activitiesTold(notifier)),
          operations(std::make_shared<DeviceOperations>(store, clock, activities, notifier)), objects(poa),
          sessions(std::make_shared<Sessions>(Sessions::Surroundings{
              objects, store, activities, notifier, [clock = clock] { return clock->nowUs(); },
              hostOf(configuration.linkAddress), hostOf(configuration.publishedLinkAddress)}))
    {
        if (!configuration.deviceId.isEmpty())
            keepDeviceId(configuration.statePath, configuration.deviceId); // the store has the folder for itself now
        tellChanges(*store, notifier);
        control = objects.serve<ControlServant>(configuration.objectKey, store, operations, sessions,
                                                configuration.firmwareVersion);
    }

    void stop();

    const std::shared_ptr<StoreThread> store;
    const std::shared_ptr<DeviceClock> clock;
    const std::shared_ptr<Notifier> notifier;
    const std::shared_ptr<Activities> activities;
    const std::shared_ptr<DeviceOperations> operations;
    const ServedObjects objects;
    const std::shared_ptr<Sessions> sessions;
    std::shared_ptr<Activation> control;
};

void RecorderService::Private::stop()
{
    objects.refuseCalls();
    operations->cancel(); // so that calls that wait for such work are answered
    objects.waitForCalls();
    operations->stop();
    sessions->stop();
    notifier->stop();
    store->stop();
}

RecorderService::RecorderService(const RecorderConfiguration &configuration, PortableServer::POA_ptr poa)
    : d(std::make_unique<Private>(configuration, poa))
{
}

RecorderService::~RecorderService()
{
    stop();
}

void RecorderService::stop()
{
    d->stop();
}

CORBA::Object_ptr RecorderService::reference() const
{
    return d->control->reference();
}

QString RecorderService::importFile(const QString &path, const ImportControl &control)
{
    return recorder::importFile(*d->store, path, control);
}

QVector<RefusedFile> RecorderService::refusedFiles() const
{
    return d->store->ask([](RecordStore &records) { return records.refused(); });
}

} // namespace installation::recorder

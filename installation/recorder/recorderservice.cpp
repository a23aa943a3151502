#include "installation/recorder/recorderservice.h"

#include "installation/cco/activation.h"
#include "installation/recorder/controlservant.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"

namespace installation::recorder
{

class RecorderService::Private
{
public:
    Private(const RecorderConfiguration &configuration, PortableServer::POA_ptr poa)
        : store(std::make_shared<StoreThread>(configuration.statePath, configuration.answerLimit)),
          operations(std::make_shared<DeviceOperations>(store, configuration.statePath)),
          control(poa, configuration.objectKey, new ControlServant(store, operations, configuration.firmwareVersion))
    {
    }

    const std::shared_ptr<StoreThread> store; // lives until the last call is answered
    const std::shared_ptr<DeviceOperations> operations;
    const Activation control;
};

RecorderService::RecorderService(const RecorderConfiguration &configuration, PortableServer::POA_ptr poa)
    : d(std::make_unique<Private>(configuration, poa))
{
}

RecorderService::~RecorderService()
{
    d->operations->stop(); // calls that wait for it are answered, and the ORB can end
}

CORBA::Object_ptr RecorderService::reference() const
{
    return d->control.reference();
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

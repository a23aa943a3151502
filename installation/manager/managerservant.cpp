#include "installation/manager/managerservant.h"

#include "installation/manager/recorddescription.h"

#include "korvebase/corbatoclientconverter.h"
#include "objectbase/exceptions.h"

namespace installation
{

namespace
{

using Failure = TQ_KRV::IF_KRV_c_KRV;

[[noreturn]] void fail(TQ_KRV::IF_KRV_c_KRV::eKRVKind kind, const QString &text)
{
    throw Failure::exKRV(kind, text.toUtf8().constData());
}

char *owned(const QString &text)
{
    return CORBA::string_dup(text.toUtf8().constData());
}

/// What all ways to register a channel have in common.
struct Registration {
    TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager;
    TQ_KRV::eDATARATE_CLASS rate;
    TQ_KRV::eDATA_FORMAT format;
    bool record;
    bool replay;
    const char *name;
};

ChannelSettings settingsOf(const Registration &registration)
{
    return {.name = QString::fromUtf8(registration.name),
            .rate = registration.rate,
            .format = registration.format,
            .record = registration.record,
            .replay = registration.replay,
            .channelManager = textOfReference(registration.channelManager)};
}

/// No device at all is any device.
void allowOnly(ChannelSettings &settings, const char *deviceId)
{
    if (*deviceId)
        settings.deviceGroups = {{QString::fromUtf8(deviceId)}};
}

} // namespace

ManagerServant::ManagerServant(ManagerConfiguration configuration, std::shared_ptr<const DeviceDirectory> directory,
                               CORBA::Object_ptr admin, std::shared_ptr<ChannelService> channels,
                               std::shared_ptr<Exports> exports)
    : configuration(std::move(configuration)), directory(std::move(directory)),
      admin(TQ_KRV::IF_KORVE_Admin::_unchecked_narrow(admin)), channels(std::move(channels)),
      exports(std::move(exports))
{
}

TQ_KRV::IF_KRV_c_Chan_ptr ManagerServant::registerChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager,
                                                          TQ_KRV::eDATARATE_CLASS rate, TQ_KRV::eDATA_FORMAT format,
                                                          CORBA::Boolean record, CORBA::Boolean replay,
                                                          const char *name, CORBA::String_out channelId)
{
    return registered(settingsOf({channelManager, rate, format, record, replay, name}), channelId);
}

TQ_KRV::IF_KRV_c_Chan_ptr ManagerServant::registerChannelEx(TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager,
                                                            TQ_KRV::eDATARATE_CLASS rate, TQ_KRV::eDATA_FORMAT format,
                                                            CORBA::Boolean record, CORBA::Boolean replay,
                                                            const char *name, const char *deviceId,
                                                            CORBA::String_out channelId)
{
    ChannelSettings settings = settingsOf({channelManager, rate, format, record, replay, name});
    allowOnly(settings, deviceId);
    return registered(settings, channelId);
}

TQ_KRV::IF_KRV_c_Chan_ptr
ManagerServant::registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager, TQ_KRV::eDATARATE_CLASS rate,
                                        TQ_KRV::eDATA_FORMAT format, CORBA::Boolean record, CORBA::Boolean replay,
                                        const char *name, const char *deviceId, TQ_KRV::interfaceTypeEnum interfaceType,
                                        const char *receiverAddress, CORBA::String_out channelId)
{
    ChannelSettings settings = settingsOf({channelManager, rate, format, record, replay, name});
    allowOnly(settings, deviceId);
    settings.interfaceType = interfaceType;
    settings.receiverAddress = QString::fromUtf8(receiverAddress);
    return registered(settings, channelId);
}

TQ_KRV::IF_KRV_c_Chan_ptr ManagerServant::registered(const ChannelSettings &settings, CORBA::String_out &channelId)
{
    const ChannelService::Registered channel = channels->registerChannel(settings);
    channelId = owned(channel.id);
    return channel.reference;
}

TQ_KRV::IF_KORVE_Replay_ptr ManagerServant::getKorveReplayInterface(const char *deviceId)
{
    return channels->replay(QString::fromUtf8(deviceId));
}

TQ_KRV::IF_KRV_c_Chan_ptr ManagerServant::getKorveChannelInterface(const char *channelId)
{
    return channels->channel(QString::fromUtf8(channelId));
}

TQ_KRV::IF_KORVE_Admin_ptr ManagerServant::getKorveAdminInterface()
{
    return TQ_KRV::IF_KORVE_Admin::_duplicate(admin);
}

TQ_KRV::seqString *ManagerServant::getAllDevices()
{
    const QStringList ids = directory->ids();
    TQ_KRV::seqString_var devices = new TQ_KRV::seqString;
    devices->length(static_cast<CORBA::ULong>(ids.size()));
    for (int position = 0; position < ids.size(); ++position)
        devices[static_cast<CORBA::ULong>(position)] = owned(ids[position]);
    return devices._retn();
}

char *ManagerServant::mapDeviceIdToAddress(const char *deviceId)
{
    return owned(known(deviceId).address);
}

char *ManagerServant::mapAddressToDeviceId(const char *address)
{
    const auto device = directory->findByAddress(QString::fromUtf8(address));
    if (!device)
        fail(Failure::Invalid_Address, QStringLiteral("no device at %1").arg(QString::fromUtf8(address)));
    return owned(device->id);
}

char *ManagerServant::getDeviceInformation(const char *deviceId, CORBA::ULong &state)
{
    const Device device = known(deviceId);
    state = device.available ? 1 : 0;
    return owned(device.status.firmwareVersion);
}

TQ_KRV::struMETA_DATA *ManagerServant::getMetaDataForRecord(const char *deviceId, const char *recordId)
{
    const Device device = known(deviceId);
    return ask(device, [&](TQ_KORVE::IF_Control_ptr recorder) {
        KORVE_XML::KORVE_RecordData record = recordWithIndex(recorder, recordId);
        record.SetKorveAddress(device.address);
        return KorveCommon::CorbaToClientConverter::toCorbaMetaData(record);
    });
}

TQ_KRV::seqRECORD_DATA *ManagerServant::getAllRecords(const char *deviceId)
{
    return ask(known(deviceId), [](TQ_KORVE::IF_Control_ptr recorder) {
        const TQ_KORVE::seqMETA_DATA_var records = recorder->listAllRecordsEx3();
        return toClientRecords(records.in());
    });
}

char *ManagerServant::getWorkstationName()
{
    return owned(configuration.workstationName);
}

void ManagerServant::exportRecording(TQ_KRV::IF_ExportCallback_ptr callback)
{
    const ExportOrder order = orderFrom(callback);
    const QByteArray device = order.device.toUtf8();
    const QByteArray record = order.record.toUtf8();
    ask(known(device.constData()), [&](TQ_KORVE::IF_Control_ptr recorder) {
        return TQ_KORVE::struMETA_DATA_var(recorder->getMetaData(record.constData()))->size;
    });
    try {
        exports->start(order);
    } catch (const std::runtime_error &error) {
        fail(Failure::Request_Failed, QString::fromUtf8(error.what()));
    }
}

void ManagerServant::cancelExport(const char *exportId)
{
    if (!exports->cancel(QString::fromUtf8(exportId)))
        fail(Failure::Request_Failed, QStringLiteral("no export %1 is running").arg(QString::fromUtf8(exportId)));
}

void ManagerServant::restorePelinFileGroup(const char *deviceId, const char *recordId, const char *fileGroup)
{
    known(deviceId);
    if (*recordId == '\0') // any other may be one that only the archive has
        fail(Failure::Invalid_RecordId, QStringLiteral("no record is named"));
    fail(Failure::Request_Failed,
         QStringLiteral("file group %1 cannot be restored: this manager takes nothing back from an archive")
             .arg(QString::fromUtf8(fileGroup)));
}

CORBA::Boolean ManagerServant::getPelinConnectionParameter(CORBA::String_out host, CORBA::UShort &port)
{
    const ManagerConfiguration::Archive archive = configuration.archive.value_or(ManagerConfiguration::Archive());
    host = owned(archive.host);
    port = archive.port;
    return configuration.archive.has_value();
}

ExportOrder ManagerServant::orderFrom(TQ_KRV::IF_ExportCallback_ptr exporter) const
{
    if (CORBA::is_nil(exporter))
        fail(Failure::Request_Failed, QStringLiteral("there is no exporter"));
    try {
        return orderOf(exporter, configuration.timing.clientLimit);
    } catch (const CORBA::Exception &error) {
        fail(Failure::Request_Failed,
             QStringLiteral("the exporter does not answer: %1").arg(QLatin1String(error._name())));
    }
}

Device ManagerServant::known(const char *deviceId) const
{
    const QString id = QString::fromUtf8(deviceId);
    const auto device = directory->find(id);
    if (!device)
        fail(Failure::Invalid_DeviceId, QStringLiteral("there is no device \"%1\"").arg(id));
    return *device;
}

template <typename Question>
std::invoke_result_t<Question, TQ_KORVE::IF_Control_ptr> ManagerServant::ask(const Device &device,
                                                                             Question question) const
{
    if (CORBA::is_nil(device.control))
        fail(Failure::Request_Failed,
             QStringLiteral("device %1, last seen at %2, has not been found").arg(device.id, device.address));
    try {
        return question(device.control.in());
    } catch (const TQ_KORVE::exKorve &refusal) {
        fail(refusal.kind == TQ_KORVE::ekINVALID_RECORD_ID ? Failure::Invalid_RecordId : Failure::Request_Failed,
             QStringLiteral("device %1: %2").arg(device.id, QString::fromUtf8(refusal.text)));
    } catch (const CORBA::SystemException &error) {
        fail(Failure::Request_Failed, QStringLiteral("device %1 at %2 does not answer: %3")
                                          .arg(device.id, device.address, QLatin1String(error._name())));
    } catch (const REPORTGENERATOR::ReportException &error) {
        fail(Failure::Request_Failed,
             QStringLiteral("device %1: unreadable record: %2").arg(device.id, QString::fromUtf8(error.what())));
    }
}

} // namespace installation

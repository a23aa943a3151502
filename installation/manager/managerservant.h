#pragma once

#include "installation/manager/channelservice.h"
#include "installation/manager/devicedirectory.h"
#include "installation/manager/exports.h"
#include "installation/manager/managerconfiguration.h"

#include "idl/korvemanager.hh"

#include <memory>
#include <type_traits>

namespace installation
{

/// The manager's main interface: what devices there are and what records they have, asked of the recorders.
///
/// `exKRV` tells what is wrong: an unknown device, address or record, or a request that failed, since the recorder does
/// not answer or refuses; its text names both. `getAllRecords` gives the records without index, bookmarks and history,
/// which `getRecord` of the administration has. `getDeviceInformation` gives the firmware version, state 1 while the
/// device answers and 0 when it does not. Channels and replay are those of ChannelService. `exportRecording` answers
/// when the export has begun, and is refused as one that failed for an exporter that is nil or does not answer, an id
/// that is being exported, and too many exports at once. This manager restores nothing from an archive:
/// `Request_Failed`. Thread: any; a call waits for a recorder at most for the call limit of each question.
class ManagerServant : public POA_TQ_KRV::IF_KRV_c_KRV
{
public:
    ManagerServant(ManagerConfiguration configuration, std::shared_ptr<const DeviceDirectory> directory,
                   CORBA::Object_ptr admin, std::shared_ptr<ChannelService> channels, std::shared_ptr<Exports> exports);

    TQ_KRV::IF_KRV_c_Chan_ptr registerChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager, TQ_KRV::eDATARATE_CLASS rate,
                                              TQ_KRV::eDATA_FORMAT format, CORBA::Boolean record, CORBA::Boolean replay,
                                              const char *name, CORBA::String_out channelId) override;
    TQ_KRV::IF_KRV_c_Chan_ptr registerChannelEx(TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager,
                                                TQ_KRV::eDATARATE_CLASS rate, TQ_KRV::eDATA_FORMAT format,
                                                CORBA::Boolean record, CORBA::Boolean replay, const char *name,
                                                const char *deviceId, CORBA::String_out channelId) override;
    TQ_KRV::IF_KRV_c_Chan_ptr registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr channelManager,
                                                      TQ_KRV::eDATARATE_CLASS rate, TQ_KRV::eDATA_FORMAT format,
                                                      CORBA::Boolean record, CORBA::Boolean replay, const char *name,
                                                      const char *deviceId, TQ_KRV::interfaceTypeEnum interfaceType,
                                                      const char *receiverAddress,
                                                      CORBA::String_out channelId) override;
    TQ_KRV::IF_KORVE_Replay_ptr getKorveReplayInterface(const char *deviceId) override;
    TQ_KRV::IF_KRV_c_Chan_ptr getKorveChannelInterface(const char *channelId) override;
    TQ_KRV::IF_KORVE_Admin_ptr getKorveAdminInterface() override;
    TQ_KRV::seqString *getAllDevices() override;
    char *mapDeviceIdToAddress(const char *deviceId) override;
    char *mapAddressToDeviceId(const char *address) override;
    char *getDeviceInformation(const char *deviceId, CORBA::ULong &state) override;
    TQ_KRV::struMETA_DATA *getMetaDataForRecord(const char *deviceId, const char *recordId) override;
    TQ_KRV::seqRECORD_DATA *getAllRecords(const char *deviceId) override;
    char *getWorkstationName() override;
    void exportRecording(TQ_KRV::IF_ExportCallback_ptr callback) override;
    void cancelExport(const char *exportId) override;
    void restorePelinFileGroup(const char *deviceId, const char *recordId, const char *fileGroup) override;
    CORBA::Boolean getPelinConnectionParameter(CORBA::String_out host, CORBA::UShort &port) override;

private:
    TQ_KRV::IF_KRV_c_Chan_ptr registered(const ChannelSettings &settings, CORBA::String_out &channelId);
    ExportOrder orderFrom(TQ_KRV::IF_ExportCallback_ptr exporter) const;
    Device known(const char *deviceId) const;
    template <typename Question>
    std::invoke_result_t<Question, TQ_KORVE::IF_Control_ptr> ask(const Device &device, Question question) const;

    const ManagerConfiguration configuration;
    const std::shared_ptr<const DeviceDirectory> directory;
    const TQ_KRV::IF_KORVE_Admin_var admin;
    const std::shared_ptr<ChannelService> channels;
    const std::shared_ptr<Exports> exports;
};

} // namespace installation

#pragma once

#include "installation/manager/devicedirectory.h"
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
/// device answers and 0 when it does not. This manager keeps no channels, exports nothing and restores nothing from an
/// archive: channels are refused with `Maximum_Number_Channels_Reached`, the others with `Request_Failed`, and the
/// references of replay and channels are nil.
/// Thread: any; a call waits for a recorder at most for the call limit of each question.
class ManagerServant : public POA_TQ_KRV::IF_KRV_c_KRV
{
public:
    ManagerServant(ManagerConfiguration configuration, std::shared_ptr<const DeviceDirectory> directory,
                   CORBA::Object_ptr admin);

    TQ_KRV::IF_KRV_c_Chan_ptr registerChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr, TQ_KRV::eDATARATE_CLASS,
                                              TQ_KRV::eDATA_FORMAT, CORBA::Boolean, CORBA::Boolean, const char *,
                                              CORBA::String_out) override;
    TQ_KRV::IF_KRV_c_Chan_ptr registerChannelEx(TQ_KRV::IF_KRV_c_ChanMan_ptr, TQ_KRV::eDATARATE_CLASS,
                                                TQ_KRV::eDATA_FORMAT, CORBA::Boolean, CORBA::Boolean, const char *,
                                                const char *deviceId, CORBA::String_out) override;
    TQ_KRV::IF_KRV_c_Chan_ptr registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr, TQ_KRV::eDATARATE_CLASS,
                                                      TQ_KRV::eDATA_FORMAT, CORBA::Boolean, CORBA::Boolean,
                                                      const char *, const char *deviceId, TQ_KRV::interfaceTypeEnum,
                                                      const char *, CORBA::String_out) override;
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
    [[noreturn]] void refuseChannel(const char *deviceId) const;
    Device known(const char *deviceId) const;
    template <typename Question>
    std::invoke_result_t<Question, TQ_KORVE::IF_Control_ptr> ask(const Device &device, Question question) const;

    const ManagerConfiguration configuration;
    const std::shared_ptr<const DeviceDirectory> directory;
    const TQ_KRV::IF_KORVE_Admin_var admin;
};

} // namespace installation

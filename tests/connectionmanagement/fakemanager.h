#pragma once

#include "idl/korvemanager.hh"

#include <functional>
#include <map>
#include <string>
#include <vector>

/// A recorder manager: it knows its workstation and the records of its devices, and hands out a reference of its own
/// for each device and channel. Behind those there is nobody.
class FakeManager : public POA_TQ_KRV::IF_KRV_c_KRV
{
public:
    /// @p poa makes the references that are handed out; it takes keys from its users.
    explicit FakeManager(PortableServer::POA_ptr poa);

    /// Runs first in every operation, and may throw.
    std::function<void()> trouble = [] {};
    bool handsOut = true; ///< references for devices and channels, and of its administration; otherwise nil ones
    std::string workstation;
    bool hasArchive = true; ///< at archive:8010
    std::map<std::string, TQ_KRV::seqRECORD_DATA> records;
    /// The operations that were called, with their argument.
    std::vector<std::string> calls;

    TQ_KRV::IF_KORVE_Replay_ptr getKorveReplayInterface(const char *deviceId) override;
    TQ_KRV::IF_KRV_c_Chan_ptr getKorveChannelInterface(const char *channelId) override;
    TQ_KRV::IF_KORVE_Admin_ptr getKorveAdminInterface() override;
    TQ_KRV::seqRECORD_DATA *getAllRecords(const char *deviceId) override;
    char *getWorkstationName() override;

    TQ_KRV::IF_KRV_c_Chan_ptr registerChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr, TQ_KRV::eDATARATE_CLASS,
                                              TQ_KRV::eDATA_FORMAT, CORBA::Boolean, CORBA::Boolean, const char *,
                                              CORBA::String_out) override;
    TQ_KRV::IF_KRV_c_Chan_ptr registerChannelEx(TQ_KRV::IF_KRV_c_ChanMan_ptr, TQ_KRV::eDATARATE_CLASS,
                                                TQ_KRV::eDATA_FORMAT, CORBA::Boolean, CORBA::Boolean, const char *,
                                                const char *, CORBA::String_out) override;
    TQ_KRV::IF_KRV_c_Chan_ptr registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan_ptr, TQ_KRV::eDATARATE_CLASS,
                                                      TQ_KRV::eDATA_FORMAT, CORBA::Boolean, CORBA::Boolean,
                                                      const char *, const char *, TQ_KRV::interfaceTypeEnum,
                                                      const char *, CORBA::String_out) override;
    TQ_KRV::seqString *getAllDevices() override;
    char *mapDeviceIdToAddress(const char *) override;
    /// "D" and the address.
    char *mapAddressToDeviceId(const char *address) override;
    char *getDeviceInformation(const char *, CORBA::ULong &) override;
    TQ_KRV::struMETA_DATA *getMetaDataForRecord(const char *, const char *) override;
    void exportRecording(TQ_KRV::IF_ExportCallback_ptr callback) override;
    void cancelExport(const char *exportId) override;
    void restorePelinFileGroup(const char *deviceId, const char *recordId, const char *fileGroup) override;
    CORBA::Boolean getPelinConnectionParameter(CORBA::String_out host, CORBA::UShort &port) override;

private:
    void begin(const std::string &call);
    CORBA::Object_ptr referenceFor(const char *type, const std::string &key) const;

    const PortableServer::POA_var poa;
};

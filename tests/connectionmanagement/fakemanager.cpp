#include "tests/connectionmanagement/fakemanager.h"

using namespace TQ_KRV;

namespace
{
[[noreturn]] void notHere()
{
    throw CORBA::NO_IMPLEMENT();
}
} // namespace

FakeManager::FakeManager(PortableServer::POA_ptr poa) : poa(PortableServer::POA::_duplicate(poa)) {}

void FakeManager::begin(const std::string &call)
{
    calls.push_back(call);
    trouble();
}

CORBA::Object_ptr FakeManager::referenceFor(const char *type, const std::string &key) const
{
    if (!handsOut)
        return CORBA::Object::_nil();
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key.c_str());
    return poa->create_reference_with_id(id, type);
}

IF_KORVE_Replay_ptr FakeManager::getKorveReplayInterface(const char *deviceId)
{
    begin(std::string("getKorveReplayInterface ") + deviceId);
    const CORBA::Object_var object = referenceFor(IF_KORVE_Replay::_PD_repoId, std::string("replay ") + deviceId);
    return IF_KORVE_Replay::_narrow(object);
}

IF_KRV_c_Chan_ptr FakeManager::getKorveChannelInterface(const char *channelId)
{
    begin(std::string("getKorveChannelInterface ") + channelId);
    const CORBA::Object_var object = referenceFor(IF_KRV_c_Chan::_PD_repoId, std::string("channel ") + channelId);
    return IF_KRV_c_Chan::_narrow(object);
}

IF_KORVE_Admin_ptr FakeManager::getKorveAdminInterface()
{
    begin("getKorveAdminInterface");
    const CORBA::Object_var object = referenceFor(IF_KORVE_Admin::_PD_repoId, "admin");
    return IF_KORVE_Admin::_narrow(object);
}

seqRECORD_DATA *FakeManager::getAllRecords(const char *deviceId)
{
    begin(std::string("getAllRecords ") + deviceId);
    return new seqRECORD_DATA(records[deviceId]);
}

char *FakeManager::getWorkstationName()
{
    begin("getWorkstationName");
    return CORBA::string_dup(workstation.c_str());
}

IF_KRV_c_Chan_ptr FakeManager::registerChannel(IF_KRV_c_ChanMan_ptr, eDATARATE_CLASS, eDATA_FORMAT, CORBA::Boolean,
                                               CORBA::Boolean, const char *, CORBA::String_out)
{
    notHere();
}

IF_KRV_c_Chan_ptr FakeManager::registerChannelEx(IF_KRV_c_ChanMan_ptr, eDATARATE_CLASS, eDATA_FORMAT, CORBA::Boolean,
                                                 CORBA::Boolean, const char *, const char *, CORBA::String_out)
{
    notHere();
}

IF_KRV_c_Chan_ptr FakeManager::registerReceiverChannel(IF_KRV_c_ChanMan_ptr, eDATARATE_CLASS, eDATA_FORMAT,
                                                       CORBA::Boolean, CORBA::Boolean, const char *, const char *,
                                                       interfaceTypeEnum, const char *, CORBA::String_out)
{
    notHere();
}

seqString *FakeManager::getAllDevices()
{
    notHere();
}

char *FakeManager::mapDeviceIdToAddress(const char *)
{
    notHere();
}

char *FakeManager::mapAddressToDeviceId(const char *address)
{
    begin(std::string("mapAddressToDeviceId ") + address);
    return CORBA::string_dup((std::string("D") + address).c_str());
}

char *FakeManager::getDeviceInformation(const char *, CORBA::ULong &)
{
    notHere();
}

struMETA_DATA *FakeManager::getMetaDataForRecord(const char *, const char *)
{
    notHere();
}

void FakeManager::exportRecording(IF_ExportCallback_ptr callback)
{
    const CORBA::String_var id = callback->exportID();
    begin(std::string("exportRecording ") + id.in());
}

void FakeManager::cancelExport(const char *exportId)
{
    begin(std::string("cancelExport ") + exportId);
}

void FakeManager::restorePelinFileGroup(const char *deviceId, const char *recordId, const char *fileGroup)
{
    begin(std::string("restorePelinFileGroup ") + deviceId + ' ' + recordId + ' ' + fileGroup);
}

CORBA::Boolean FakeManager::getPelinConnectionParameter(CORBA::String_out host, CORBA::UShort &port)
{
    host = CORBA::string_dup(hasArchive ? "archive" : "");
    port = hasArchive ? 8010 : 0;
    begin("getPelinConnectionParameter");
    return hasArchive;
}

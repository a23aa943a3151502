#include "common/parsecorbauserexception.h"

#include "common/exceptionfamily.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "idl/lumbalandatacom.hh"

#include <array>

namespace
{

constexpr std::array korveKinds{"ekNOTIFICATION_RECEIVER_UNKNOWN",
                                "ekMESSAGE_UNEXPECTED",
                                "ekINVALID_VALUE",
                                "ekNO_SPACE_LEFT_ON_DEVICE",
                                "ekACCEPT_FAILED",
                                "ekSETSOCKOPT_FAILED",
                                "ekSOCKET_FAILED",
                                "ekBIND_FAILED",
                                "ekLISTEN_FAILED",
                                "ekCONNECTION_FAILURE",
                                "ekDATARATE_CLASS_CURRENTLY_NOT_AVAILABLE",
                                "ekNETWORK_DEVICE_FAILURE",
                                "ekINVALID_RECORD_ID",
                                "ekNETWORK_FAILURE",
                                "ekPTHREAD_FAILURE",
                                "ekRECORD_ACCESS_FAILED",
                                "ekRECORD_CORRUPTED",
                                "ekRECORD_CREATION_FAILED",
                                "ekARCHIVE_CREATION_FAILED",
                                "ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE",
                                "ekRESSOURCES_EXHAUSTED", // contract: spelled so
                                "ekSESSION_CREATION_FAILED",
                                "ekDATARATE_EXCEEDED_BY_RECORDING",
                                "ekSTORAGE_SUBSYSTEM_FULL",
                                "ekINDEXFILE_ACCESS_FAILED",
                                "ekINVALID_CONFIGURATION",
                                "ekIMPLEMENTATION_FAULT",
                                "ekCOPY_SEQUENCE_INCONSISTENT",
                                "ekCOPY_FAULT",
                                "ekUDP_BROADCAST_FAILURE",
                                "ekERROR_IN_RECORD_LIST",
                                "ekARCHIVE_DIR_EXISTS",
                                "ekMASS_STORAGE_TOO_SLOW",
                                "ekMASS_STORAGE_DEFECT",
                                "ekBOOKMARK_ALREADY_EXISTS"};
static_assert(korveKinds.size() == TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS + 1, "the kinds of the wire, in its order");

constexpr std::array lldcKinds{"ekIllegalIf",        "ekWrongSequence",         "ekConnFailed",
                               "ekDisconnectFailed", "ekDataStreamUnavailable", "ekIfError",
                               "ekUnknown",          "ekDataRateUnavailable"};
static_assert(lldcKinds.size() == LLDCmodule::ekDataRateUnavailable + 1, "the kinds of the wire, in its order");

constexpr std::array genKinds{"Invalid_Interface", "DataRateClass_Unknown", "DataFormat_Unknown",
                              "Maximum_Number_Channels_Reached", "No_Korve_Device_Available"};
static_assert(genKinds.size() == TQ_KRV::No_Korve_Device_Available + 1, "the kinds of the wire, in its order");

constexpr std::array chanManKinds{"IPC_Not_Started",   "IPC_Not_Stopped",          "Resource_Fault",
                                  "Channel_Unknown",   "Unable_To_Start_DataFlow", "Channel_Not_Active",
                                  "Unable_To_Connect", "Unable_To_Disconnect",     "Fault"};
static_assert(chanManKinds.size() == TQ_KRV::IF_KRV_c_ChanMan::Fault + 1, "the kinds of the wire, in its order");

constexpr std::array chanKinds{"Channel_Is_Recording", "Channel_Is_Replaying", "Channel_Is_Not_Active",
                               "No_Capacity_On_Korve", "Invalid_DeviceId",     "Range_Error"};
static_assert(chanKinds.size() == TQ_KRV::IF_KRV_c_Chan::Range_Error + 1, "the kinds of the wire, in its order");

constexpr std::array adminKinds{"Invalid_RecordId"};
static_assert(adminKinds.size() == TQ_KRV::IF_KORVE_Admin::Invalid_RecordId + 1, "the kinds of the wire, in its order");

// contract: two of the lines of unknown kinds have a single colon; exLLDC and exAdmin have none of their own.
constexpr std::array deviceFamilies{
    ExceptionFamily{recogniseAs<TQ_KORVE::exKorve>, 10000, "TQ_KORVE::exKorve", korveKinds,
                    "undefined TQ_KORVE:exKorve exception"},
    ExceptionFamily{recogniseAs<LLDCmodule::exLLDC>, 900, "LLDCmodule::exLLDC", lldcKinds, "undefined"},
};
constexpr std::array channelFamilies{
    ExceptionFamily{recogniseAs<TQ_KRV::exGen>, 700, "TQ_KRV::exGen", genKinds, "undefined TQ_KRV:exGen exception"},
    ExceptionFamily{recogniseAs<TQ_KRV::IF_KRV_c_ChanMan::exChanMan>, 750, "TQ_KRV::IF_KRV_c_ChanMan::exChanMan",
                    chanManKinds, "undefined TQ_KRV::IF_KRV_c_ChanMan::exChanMan exception"},
    ExceptionFamily{recogniseAs<TQ_KRV::IF_KRV_c_Chan::exChan>, 800, "TQ_KRV::IF_KRV_c_Chan::exChan", chanKinds,
                    "undefined TQ_KRV::IF_KRV_c_Chan::exChan exception"},
    ExceptionFamily{recogniseAs<TQ_KRV::IF_KORVE_Admin::exAdmin>, 501, "TQ_KRV::IF_KORVE_Admin::exAdmin", adminKinds,
                    "undefined"},
};

} // namespace

namespace KorveDevice
{

QString ParseCorbaUserException::GetException(const CORBA::UserException &e)
{
    return exceptionLine(e, deviceFamilies);
}

unsigned long ParseCorbaUserException::convertException(const CORBA::UserException &e) noexcept
{
    return errorNumber(e, deviceFamilies);
}

} // namespace KorveDevice

namespace KorveChannel
{

QString ParseCorbaUserException::GetException(const CORBA::UserException &e)
{
    return exceptionLine(e, channelFamilies);
}

unsigned long ParseCorbaUserException::convertException(const CORBA::UserException &e) noexcept
{
    return errorNumber(e, channelFamilies);
}

} // namespace KorveChannel

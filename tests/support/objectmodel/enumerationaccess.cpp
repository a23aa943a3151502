#include "tests/support/objectmodel/enumerationaccess.h"

#include "objectmodel/admin.h"
#include "objectmodel/availabledatarates.h"
#include "objectmodel/channeldata.h"
#include "objectmodel/configuration.h"
#include "objectmodel/dataformatlimit.h"
#include "objectmodel/datarateusage.h"
#include "objectmodel/filtercondition.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_availabledevice.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_cfgdevice.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/korve_storagestatus.h"
#include "objectmodel/korvechannelparameter.h"
#include "objectmodel/korvetypes.h"
#include "objectmodel/netifparams.h"
#include "objectmodel/numberfilter.h"
#include "objectmodel/occupieddatarates.h"
#include "objectmodel/recordingdata.h"
#include "objectmodel/recordingprocessingstate.h"
#include "objectmodel/recordingsession.h"
#include "objectmodel/replayingdata.h"
#include "objectmodel/requesteddatarates.h"
#include "objectmodel/requestsparebandwidth.h"
#include "objectmodel/resourcestatus.h"
#include "objectmodel/sparedatarates.h"
#include "objectmodel/stringfilter.h"
#include "objectmodel/supporteddatarate.h"

namespace modeltest
{
namespace
{

using namespace KORVE_XML;

// One enumeration by the names that follow from its own.
#define KORVE_ENUMERATION(Class, Name)                                                                                 \
    EnumerationAccess                                                                                                  \
    {                                                                                                                  \
#Class, #Name, &Class::Get##Name##s, &Class::GetGUI##Name##s,                                                  \
            [](int number) { return Class().Name##ToName(static_cast<Class::Name>(number)); },                         \
            [](const QString &literal) { return static_cast<int>(Class().NameTo##Name(literal)); },                    \
            [](int number) { return Class().IsValid##Name(static_cast<Class::Name>(number)); }       \
    }

std::vector<EnumerationAccess> listed()
{
    return {KORVE_ENUMERATION(KORVE_RecordData, RecordStatus),
            KORVE_ENUMERATION(KORVE_RecordData, DataFormat),
            KORVE_ENUMERATION(KORVE_RecordData, DataRate),
            KORVE_ENUMERATION(KORVE_RecordData, Interface),
            KORVE_ENUMERATION(RecordingProcessingState, State),
            KORVE_ENUMERATION(ChannelData, DataFormat),
            KORVE_ENUMERATION(ChannelData, AdditionalDataRate),
            KORVE_ENUMERATION(ChannelData, DataRate),
            KORVE_ENUMERATION(ChannelData, PelinRegistrationMode),
            KORVE_ENUMERATION(KorveChannelParameter, DataFormat),
            KORVE_ENUMERATION(KorveChannelParameter, DataRate),
            KORVE_ENUMERATION(KorveChannelParameter, PelinRegistrationMode),
            KORVE_ENUMERATION(RecordingData, RecordStatus),
            KORVE_ENUMERATION(ReplayingData, DataRate),
            KORVE_ENUMERATION(ReplayingData, ReplayStatus),
            KORVE_ENUMERATION(RecordingSession, RecordingState),
            KORVE_ENUMERATION(NetIfParams, KorveInterfaceType),
            KORVE_ENUMERATION(KorveTypes, DeviceType),
            KORVE_ENUMERATION(KorveTypes, SystemResetCmd),
            KORVE_ENUMERATION(KorveTypes, KorveSessionFault),
            KORVE_ENUMERATION(KORVE_CfgDevice, InterfaceType),
            KORVE_ENUMERATION(DataFormatLimit, DataFormat),
            KORVE_ENUMERATION(ForcedDeletion, ProcessingState),
            KORVE_ENUMERATION(ResourceStatus, ResourceType),
            KORVE_ENUMERATION(DataRateUsage, DataRate),
            KORVE_ENUMERATION(OccupiedDataRates, DataRate),
            KORVE_ENUMERATION(RequestedDataRates, DataRate),
            KORVE_ENUMERATION(AvailableDataRates, DataRate),
            KORVE_ENUMERATION(SpareDataRates, DataRate),
            KORVE_ENUMERATION(RequestSpareBandwidth, ResourceType),
            KORVE_ENUMERATION(Configuration, ChoiceConfiguration),
            KORVE_ENUMERATION(SupportedDataRate, DataRate),
            KORVE_ENUMERATION(SupportedDataRate, SampleSize),
            KORVE_ENUMERATION(KORVE_AvailableDevice, DeviceType),
            KORVE_ENUMERATION(KORVE_StorageStatus, DeviceType),
            KORVE_ENUMERATION(KORVE_Bite, ResultState),
            KORVE_ENUMERATION(Admin, RecordReplayAllModes),
            KORVE_ENUMERATION(Admin, ResetMode),
            KORVE_ENUMERATION(Admin, RecordReplayMode),
            KORVE_ENUMERATION(Admin, ReplayMode),
            KORVE_ENUMERATION(Admin, DeviceType),
            KORVE_ENUMERATION(Admin, Notification),
            KORVE_ENUMERATION(Admin, BiteState),
            KORVE_ENUMERATION(Admin, BiteCmd),
            KORVE_ENUMERATION(Admin, HealthState),
            KORVE_ENUMERATION(FilterCondition, ChoiceFilterCondition),
            KORVE_ENUMERATION(StringFilter, PatternSyntax),
            KORVE_ENUMERATION(NumberFilter, Comparator),
            KORVE_ENUMERATION(NumberFilter, Type)};
}

} // namespace

const std::vector<EnumerationAccess> &enumerationAccess()
{
    static const std::vector<EnumerationAccess> all = listed();
    return all;
}

const EnumerationAccess &enumerationAccess(const QString &className, const QString &name)
{
    for (const EnumerationAccess &each : enumerationAccess())
        if (each.className == className && each.name == name)
            return each;
    qFatal("no access to %s::%s", qPrintable(className), qPrintable(name));
}

} // namespace modeltest

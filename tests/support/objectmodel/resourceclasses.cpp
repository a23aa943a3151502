#include "tests/support/objectmodel/objectclass.h"

#include "objectmodel/availabledatarates.h"
#include "objectmodel/configuration.h"
#include "objectmodel/datarateusage.h"
#include "objectmodel/occupieddatarates.h"
#include "objectmodel/requesteddatarates.h"
#include "objectmodel/requestedsamplerate.h"
#include "objectmodel/requestsparebandwidth.h"
#include "objectmodel/resourcestatus.h"
#include "objectmodel/sparedatarates.h"
#include "objectmodel/supporteddatarate.h"
#include "objectmodel/supporteddatarates.h"

namespace modeltest
{

using namespace KORVE_XML;

std::vector<ObjectClass> resourceClasses()
{
    return {
        describe<ResourceStatus>(
            {KORVE_MEMBER(ResourceStatus, ResourceType), KORVE_MEMBER(ResourceStatus, Configuration),
             KORVE_MEMBER(ResourceStatus, MACAddress), KORVE_MEMBER(ResourceStatus, Throughput),
             KORVE_MEMBER(ResourceStatus, OccupiedDataRates), KORVE_MEMBER(ResourceStatus, RequestedDataRates),
             KORVE_MEMBER(ResourceStatus, AvailableDataRates), KORVE_MEMBER(ResourceStatus, SpareDataRates),
             KORVE_MEMBER(ResourceStatus, SpareBandwidth), KORVE_MEMBER(ResourceStatus, SupportsReplay)}),
        describe<DataRateUsage>({KORVE_MEMBER(DataRateUsage, NumberOfSessions), KORVE_MEMBER(DataRateUsage, DataRate)}),
        describe<OccupiedDataRates>(
            {KORVE_MEMBER(OccupiedDataRates, NumberOfSessions), KORVE_MEMBER(OccupiedDataRates, DataRate)}),
        describe<RequestedDataRates>(
            {KORVE_MEMBER(RequestedDataRates, NumberOfSessions), KORVE_MEMBER(RequestedDataRates, DataRate)}),
        describe<AvailableDataRates>(
            {KORVE_MEMBER(AvailableDataRates, NumberOfSessions), KORVE_MEMBER(AvailableDataRates, DataRate)}),
        describe<SpareDataRates>(
            {KORVE_MEMBER(SpareDataRates, NumberOfSessions), KORVE_MEMBER(SpareDataRates, DataRate)}),
        describe<RequestSpareBandwidth>(
            {KORVE_MEMBER(RequestSpareBandwidth, ResourceType), KORVE_MEMBER(RequestSpareBandwidth, Configuration),
             KORVE_MEMBER(RequestSpareBandwidth, SpareDataRates), KORVE_MEMBER(RequestSpareBandwidth, Throughput)}),
        describe<Configuration>(
            {KORVE_ALTERNATIVE(Configuration, IPAddress), KORVE_ALTERNATIVE(Configuration, Channel)}),
        describe<SupportedDataRate>(
            {KORVE_MEMBER(SupportedDataRate, DataRate), KORVE_MEMBER(SupportedDataRate, SampleRate),
             KORVE_MEMBER(SupportedDataRate, SampleSize), KORVE_MEMBER(SupportedDataRate, Throughput)}),
        describe<SupportedDataRates>({KORVE_MEMBER(SupportedDataRates, SupportedDataRate)}),
        describe<RequestedSampleRate>(
            {KORVE_MEMBER(RequestedSampleRate, SampleRate), KORVE_MEMBER(RequestedSampleRate, SampleSize)})};
}

} // namespace modeltest

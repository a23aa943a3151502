#include "tests/support/objectmodel/objectclass.h"

#include "objectmodel/channeldata.h"
#include "objectmodel/korvechannelparameter.h"
#include "objectmodel/korvetypes.h"
#include "objectmodel/netifparams.h"
#include "objectmodel/recordingdata.h"
#include "objectmodel/recordingsession.h"
#include "objectmodel/replayingdata.h"
#include "objectmodel/replayingsession.h"

namespace modeltest
{

using namespace KORVE_XML;

std::vector<ObjectClass> channelClasses()
{
    return {
        describe<ChannelData>({KORVE_MEMBER(ChannelData, ChannelId), KORVE_MEMBER(ChannelData, ChannelName),
                               KORVE_MEMBER(ChannelData, RecordFlag), KORVE_MEMBER(ChannelData, ReplayFlag),
                               KORVE_MEMBER(ChannelData, DataRate), KORVE_MEMBER(ChannelData, DataFormat),
                               KORVE_MEMBER(ChannelData, AdditionalDataRate),
                               KORVE_MEMBER(ChannelData, RequestedSampleRate),
                               KORVE_MEMBER(ChannelData, PelinRegistrationMode)}),
        describe<KorveChannelParameter>(
            {KORVE_MEMBER(KorveChannelParameter, DataRate), KORVE_MEMBER(KorveChannelParameter, DataFormat),
             KORVE_MEMBER(KorveChannelParameter, RecordFlag), KORVE_MEMBER(KorveChannelParameter, ReplayFlag),
             KORVE_MEMBER(KorveChannelParameter, RequestedSampleRate),
             KORVE_MEMBER(KorveChannelParameter, PelinRegistrationMode)}),
        describe<RecordingData>({KORVE_MEMBER(RecordingData, DeviceId), KORVE_MEMBER(RecordingData, RecordId),
                                 KORVE_MEMBER(RecordingData, RecordName), KORVE_MEMBER(RecordingData, ChannelId),
                                 KORVE_MEMBER(RecordingData, DataStreamId), KORVE_MEMBER(RecordingData, ConnectionId),
                                 KORVE_MEMBER(RecordingData, RecordStatus), KORVE_MEMBER(RecordingData, NetIfParams)}),
        describe<ReplayingData>({KORVE_MEMBER(ReplayingData, DeviceId), KORVE_MEMBER(ReplayingData, RecordId),
                                 KORVE_MEMBER(ReplayingData, ReplayBegin), KORVE_MEMBER(ReplayingData, NoOfReplays),
                                 KORVE_MEMBER(ReplayingData, ReplayEnd), KORVE_MEMBER(ReplayingData, ChannelId),
                                 KORVE_MEMBER(ReplayingData, DataStreamId), KORVE_MEMBER(ReplayingData, KorveReserved),
                                 KORVE_MEMBER(ReplayingData, DataTransferStartedOnKORVE),
                                 KORVE_MEMBER(ReplayingData, ConnectionId), KORVE_MEMBER(ReplayingData, ReplayStatus),
                                 KORVE_MEMBER(ReplayingData, NetIfParams), KORVE_MEMBER(ReplayingData, AutomaticStop),
                                 KORVE_MEMBER(ReplayingData, DataRate)}),
        describe<RecordingSession>({KORVE_MEMBER(RecordingSession, ChannelId),
                                    KORVE_MEMBER(RecordingSession, RecordingState),
                                    KORVE_MEMBER(RecordingSession, DeviceId), KORVE_MEMBER(RecordingSession, RecordId),
                                    KORVE_MEMBER(RecordingSession, PelinID)}),
        describe<ReplayingSession>(
            {KORVE_MEMBER(ReplayingSession, RecordId), KORVE_MEMBER(ReplayingSession, ReplayBegin),
             KORVE_MEMBER(ReplayingSession, ReplayEnd), KORVE_MEMBER(ReplayingSession, NoOfReplays)}),
        describe<NetIfParams>({KORVE_MEMBER(NetIfParams, KorveInterfaceType), KORVE_MEMBER(NetIfParams, Address),
                               KORVE_MEMBER(NetIfParams, ifChannel), KORVE_MEMBER(NetIfParams, ifSpeed)}),
        describe<KorveTypes>({KORVE_MEMBER(KorveTypes, SystemResetCmd), KORVE_MEMBER(KorveTypes, NetIfParams),
                              KORVE_MEMBER(KorveTypes, KorveChannelParameter),
                              KORVE_MEMBER(KorveTypes, KorveSessionFault), KORVE_MEMBER(KorveTypes, DeviceType),
                              KORVE_MEMBER(KorveTypes, RecordingSession), KORVE_MEMBER(KorveTypes, ReplayingSession)})};
}

} // namespace modeltest

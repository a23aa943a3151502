#include "tests/support/objectmodel/objectclass.h"

#include "objectmodel/bookmarkentry.h"
#include "objectmodel/copysection.h"
#include "objectmodel/historyentry.h"
#include "objectmodel/indexentry.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/linkedrecord.h"
#include "objectmodel/pelininfo.h"
#include "objectmodel/recordattribute.h"
#include "objectmodel/recordingprocessingstate.h"

namespace modeltest
{

using namespace KORVE_XML;

std::vector<ObjectClass> recordClasses()
{
    return {describe<KORVE_RecordData>({KORVE_MEMBER(KORVE_RecordData, Finished),
                                        KORVE_MEMBER(KORVE_RecordData, RecordID),
                                        KORVE_MEMBER(KORVE_RecordData, KorveAddress),
                                        KORVE_MEMBER(KORVE_RecordData, PreliminaryRecordName),
                                        KORVE_MEMBER(KORVE_RecordData, RecordName),
                                        KORVE_MEMBER(KORVE_RecordData, Size),
                                        KORVE_MEMBER(KORVE_RecordData, StartTime),
                                        KORVE_MEMBER(KORVE_RecordData, StopTime),
                                        KORVE_MEMBER(KORVE_RecordData, RecordStatus),
                                        KORVE_MEMBER(KORVE_RecordData, DataFormat),
                                        KORVE_MEMBER(KORVE_RecordData, RecordingLoopSize),
                                        KORVE_MEMBER(KORVE_RecordData, StopPosition),
                                        KORVE_MEMBER(KORVE_RecordData, StartPosition),
                                        KORVE_MEMBER(KORVE_RecordData, DataRate),
                                        KORVE_MEMBER(KORVE_RecordData, Deletable),
                                        KORVE_MEMBER(KORVE_RecordData, Interface),
                                        KORVE_MEMBER(KORVE_RecordData, IndexEntry),
                                        KORVE_MEMBER(KORVE_RecordData, BookmarkEntry),
                                        KORVE_MEMBER(KORVE_RecordData, HistoryEntry),
                                        KORVE_MEMBER(KORVE_RecordData, PelinInfo),
                                        KORVE_MEMBER(KORVE_RecordData, RecordingProcessingState),
                                        KORVE_MEMBER(KORVE_RecordData, LinkedRecord)}),
            describe<IndexEntry>({KORVE_MEMBER(IndexEntry, RecordOffset), KORVE_MEMBER(IndexEntry, Timestamp),
                                  KORVE_MEMBER(IndexEntry, TunerFrequency), KORVE_MEMBER(IndexEntry, SampleRate),
                                  KORVE_MEMBER(IndexEntry, Bandwidth)}),
            describe<BookmarkEntry>({KORVE_MEMBER(BookmarkEntry, Timestamp), KORVE_MEMBER(BookmarkEntry, Bookmark)}),
            describe<HistoryEntry>({KORVE_MEMBER(HistoryEntry, Timestamp), KORVE_MEMBER(HistoryEntry, HistoryEntry)}),
            describe<PelinInfo>({KORVE_MEMBER(PelinInfo, PelinID), KORVE_MEMBER(PelinInfo, Timestamp)}),
            describe<RecordingProcessingState>(
                {KORVE_MEMBER(RecordingProcessingState, State), KORVE_MEMBER(RecordingProcessingState, User),
                 KORVE_MEMBER(RecordingProcessingState, Comment), KORVE_MEMBER(RecordingProcessingState, Timestamp)}),
            describe<LinkedRecord>({KORVE_MEMBER(LinkedRecord, RecordID), KORVE_MEMBER(LinkedRecord, Timestamp)}),
            describe<CopySection>({KORVE_MEMBER(CopySection, BeginSection), KORVE_MEMBER(CopySection, EndSection)}),
            describe<RecordAttribute>(
                {KORVE_MEMBER(RecordAttribute, Comment), KORVE_MEMBER(RecordAttribute, IsDeletable)})};
}

} // namespace modeltest

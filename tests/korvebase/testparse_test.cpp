#include "korvebase/testparse.h"

#include "tests/appruntime/capturedtraces.h"

#include "objectbase/exceptions.h"
#include "objectmodel/korve_recorddata.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{
using KORVE_XML::KORVE_RecordData;
using testing::ElementsAre;
using testing::IsEmpty;

KORVE_RecordData complete(const QString &name = "Name")
{
    KORVE_RecordData record;
    record.SetRecordID("R1");
    record.SetRecordName(name);
    record.SetSize(std::numeric_limits<quint64>::max());
    record.SetStartTime(1);
    record.SetStopTime(2);
    record.SetRecordStatus(KORVE_RecordData::IDLE);
    record.SetDataFormat(KORVE_RecordData::RAW);
    record.SetRecordingLoopSize(0);
    record.SetStopPosition(4);
    record.SetStartPosition(3);
    record.SetDataRate(KORVE_RecordData::HF_4M);
    record.SetDeletable(true);
    return record;
}

/// What the trial shows when it is always made.
std::vector<std::string> shownByTrial(const KORVE_RecordData &record)
{
    try {
        KORVE_RecordData copy;
        copy.SetXmlString(record.GetXmlString(), false);
        return {};
    } catch (const REPORTGENERATOR::RGException &failure) {
        return {failure.GetMessage().toStdString()};
    }
}

TEST(TestParse, TracesWhyARecordCannotBeWritten)
{
    CapturedTraces traces;
    KorveCommon::traceUnreadable(KORVE_RecordData());
    EXPECT_THAT(traces.take(), ElementsAre("KORVE_RecordData: Please set RecordID properly."));
}

TEST(TestParse, TracesWhyARecordCannotBeReadBack)
{
    KORVE_RecordData unchecked = complete();
    unchecked.SetValidate(false);
    unchecked.ResetRecordStatus();
    CapturedTraces traces;
    KorveCommon::traceUnreadable(unchecked);
    EXPECT_THAT(traces.take(), ElementsAre("enum is not valid (classname=KORVE_RecordData,membername=m_recordStatus)"));
}

TEST(TestParse, SaysNothingOfAGoodRecord)
{
    CapturedTraces traces;
    KorveCommon::traceUnreadable(complete());
    EXPECT_THAT(traces.take(), IsEmpty());
}

TEST(TestParse, SaysWhatATrialOfTheRecordWouldSay)
{
    std::vector<KORVE_RecordData> records{KORVE_RecordData(),
                                          complete(),
                                          complete(QString(QChar(0))),
                                          complete(QString(QChar(0x1B))),
                                          complete("</RecordName>]]>&amp;<"),
                                          complete(QString(QChar(0xD83D))),
                                          complete(QString(QChar(0xFFFE)))};
    records.push_back(complete());
    records.back().ResetDeletable();
    records.push_back(complete());
    records.back().ResetDataRate();
    records.push_back(records.back());
    records.back().SetValidate(false);
    for (const KORVE_RecordData &record : records) {
        CapturedTraces traces;
        KorveCommon::traceUnreadable(record);
        EXPECT_EQ(traces.take(), shownByTrial(record)) << record.GetRecordName().toStdString();
    }
}
} // namespace

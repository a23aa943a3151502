#include "installation/recorder/positiontimes.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordparts.h"

#include <gmock/gmock.h>

#include <QJsonArray>

using namespace installation::recorder;
using testing::ElementsAre;

namespace
{

constexpr quint64 begunUs = 1'000'000'000;

QJsonObject startingAt(int sample, const QJsonObject &others)
{
    QJsonObject object = others;
    object["core:sample_start"] = sample;
    return object;
}

/// 1000 samples of 4 bytes, one each millisecond, but with a gap of a second in the middle, where it was tuned.
Record gappedRecord()
{
    Record record;
    record.id = "R1";
    record.name = "gapped";
    record.sizeBytes = 4000;
    record.startUs = begunUs;
    record.stopUs = begunUs + 2'000'000;
    record.startPosition = 40;
    record.stopPosition = 3960;
    record.index = {{0, begunUs, 100, 1000, 800},
                    {2000, begunUs + 1'500'000, 200, 1000, 800},
                    {4000, begunUs + 2'000'000, 200, 1000, 800}};
    record.bookmarks = {{begunUs + 100'000, "early"}, {begunUs + 700'000, "gap"}, {begunUs + 1'600'000, "late"},
                        {begunUs + 2'000'000, "end"}};
    record.history = {{1, "of the source"}};
    const QJsonObject global{{"core:datatype", "ci16_le"}, {"core:sample_rate", 1000.0}, {"core:sha512", "ab"}};
    record.sigmf = {{"global", global},
                    {"captures", QJsonArray{startingAt(0, {{"core:frequency", 100}, {"core:global_index", 7}}),
                                            startingAt(500, {{"core:frequency", 200}})}},
                    {"annotations", QJsonArray{startingAt(50, {{"core:sample_count", 100}, {"core:label", "a"}}),
                                               startingAt(600, {{"core:label", "b"}})}}};
    return record;
}

bool isRefused(const QVector<FilePart> &parts, const Record &record = gappedRecord())
{
    try {
        checkedParts(record, parts);
    } catch (const RecorderError &error) {
        return error.kind() == TQ_KORVE::ekCOPY_SEQUENCE_INCONSISTENT;
    }
    return false;
}

std::vector<std::string> textsOf(const QVector<Note> &notes)
{
    std::vector<std::string> texts;
    for (const Note &note : notes)
        texts.push_back(note.text.toStdString());
    return texts;
}

TEST(Sections, AreAscendingWholeSamplesOfTheRecord)
{
    EXPECT_TRUE(isRefused({}));
    EXPECT_TRUE(isRefused({{4, 4}}));
    EXPECT_TRUE(isRefused({{8, 4}}));
    EXPECT_TRUE(isRefused({{0, 4004}}));
    EXPECT_TRUE(isRefused({{0, ~quint64(0)}}));
    EXPECT_TRUE(isRefused({{2, 8}}));
    EXPECT_TRUE(isRefused({{0, 6}}));
    EXPECT_TRUE(isRefused({{0, 8}, {4, 12}}));
    EXPECT_TRUE(isRefused({{8, 12}, {0, 4}}));
    EXPECT_TRUE(isRefused({{0, 4}, {0, 4}}));
    EXPECT_FALSE(isRefused({{0, 4000}}));
    EXPECT_FALSE(isRefused({{0, 4}, {8, 12}}));
}

TEST(Sections, AreNotTooMany)
{
    Record record = gappedRecord();
    record.sizeBytes = 1'000'000;
    QVector<FilePart> parts;
    for (int i = 0; i < maximumParts; ++i)
        parts.append({quint64(8 * i), quint64(8 * i + 4)});
    EXPECT_FALSE(isRefused(parts, record));
    parts.append({500'000, 500'004});
    EXPECT_TRUE(isRefused(parts, record));
}

TEST(Sections, HoldWholeSamplesOfAllChannels)
{
    Record record = gappedRecord();
    record.sigmf["global"] = QJsonObject{{"core:datatype", "ri16_le"}, {"core:num_channels", 3}};
    EXPECT_TRUE(isRefused({{0, 4}}, record));
    EXPECT_FALSE(isRefused({{6, 18}}, record));
}

TEST(Sections, ThatTouchAreOne)
{
    const QVector<FilePart> expected{{0, 12}, {16, 20}};
    EXPECT_EQ(checkedParts(gappedRecord(), {{0, 4}, {4, 12}, {16, 20}}), expected);
}

TEST(Sections, OfSamplesWithoutAFormatAreRefused)
{
    Record record = gappedRecord();
    record.sigmf["global"] = QJsonObject{{"core:datatype", "ci24"}};
    EXPECT_THROW(checkedParts(record, {{0, 4}}), RecorderError);
}

TEST(PositionTime, RunsWithTheSamplesAndLeapsOverAGap)
{
    const PositionTimes times(gappedRecord());
    EXPECT_EQ(times.timeUs(0), begunUs);
    EXPECT_EQ(times.timeUs(400), begunUs + 100'000);
    EXPECT_EQ(times.timeUs(1996), begunUs + 499'000);
    EXPECT_EQ(times.endTimeUs(2000), begunUs + 500'000);
    EXPECT_EQ(times.timeUs(2000), begunUs + 1'500'000);
    EXPECT_EQ(times.endTimeUs(4000), begunUs + 2'000'000);
    EXPECT_EQ(times.endTimeUs(0), begunUs);
}

TEST(PositionTime, DoesNotPassTheNextEntry)
{
    Record record = gappedRecord();
    record.index[1].timestampUs = begunUs + 400'000; // a clock that is set back, or a rate that is a little off
    const PositionTimes times(record);
    EXPECT_EQ(times.timeUs(1200), begunUs + 300'000);
    EXPECT_EQ(times.timeUs(1996), begunUs + 400'000);
    EXPECT_EQ(times.endTimeUs(2000), begunUs + 400'000);
}

TEST(PositionTime, IsTheNearestMicrosecond)
{
    Record record = gappedRecord();
    record.sigmf["global"] = QJsonObject{{"core:datatype", "ci16_le"}, {"core:sample_rate", 3e6}};
    record.index = {{0, begunUs, 0, 3'000'000, 0}};
    EXPECT_EQ(PositionTimes(record).timeUs(4), begunUs);
    EXPECT_EQ(PositionTimes(record).timeUs(8), begunUs + 1); // 0.67 us
}

TEST(PositionTime, FollowsARateThatIsNoWholeNumber)
{
    Record record = gappedRecord();
    record.sizeBytes = 4'000'000'000;
    record.sigmf["global"] = QJsonObject{{"core:datatype", "ci16_le"}, {"core:sample_rate", 1000.25}};
    record.index = {{0, 0, 0, 1000, 0}};
    EXPECT_EQ(PositionTimes(record).timeUs(4'000'000'000), 999'750'062'484u);
}

TEST(PositionTime, IsThatOfTheBeginWithoutAnIndex)
{
    Record record = gappedRecord();
    record.index.clear();
    record.sigmf["global"] = QJsonObject{{"core:datatype", "ci16_le"}};
    EXPECT_EQ(PositionTimes(record).timeUs(400), begunUs);
}

TEST(RecordOfSections, HasAnIndexEntryWhereASectionBegins)
{
    const Record copy = recordOfParts(gappedRecord(), {{400, 800}, {1600, 2400}});
    const QVector<IndexEntry> expected{{0, begunUs + 100'000, 100, 1000, 800},
                                       {400, begunUs + 400'000, 100, 1000, 800},
                                       {800, begunUs + 1'500'000, 200, 1000, 800},
                                       {1200, begunUs + 1'600'000, 200, 1000, 800}};
    EXPECT_EQ(copy.index, expected);
    EXPECT_EQ(copy.sizeBytes, 1200u);
    EXPECT_EQ(copy.startPosition, 0u);
    EXPECT_EQ(copy.stopPosition, 1200u);
    EXPECT_EQ(copy.startUs, begunUs + 100'000);
    EXPECT_EQ(copy.stopUs, begunUs + 1'600'000);
    EXPECT_TRUE(copy.deletable);
    EXPECT_TRUE(copy.history.isEmpty());
}

TEST(RecordOfSections, OfAllIsLikeTheRecord)
{
    const Record record = gappedRecord();
    const Record copy = recordOfParts(record, {{0, 4000}});
    EXPECT_EQ(copy.index, record.index);
    EXPECT_EQ(copy.bookmarks, record.bookmarks);
    EXPECT_EQ(copy.startUs, record.startUs);
    EXPECT_EQ(copy.stopUs, record.stopUs);
    EXPECT_EQ(copy.sigmf["annotations"], record.sigmf["annotations"]);
}

TEST(RecordOfSections, HasTheBookmarksOfThem)
{
    EXPECT_THAT(textsOf(recordOfParts(gappedRecord(), {{400, 800}}).bookmarks), ElementsAre("early"));
    EXPECT_THAT(textsOf(recordOfParts(gappedRecord(), {{404, 2000}}).bookmarks), ElementsAre());
    EXPECT_THAT(textsOf(recordOfParts(gappedRecord(), {{0, 400}, {2400, 4000}}).bookmarks), ElementsAre("late", "end"));
    EXPECT_THAT(textsOf(recordOfParts(gappedRecord(), {{2000, 2400}}).bookmarks), ElementsAre());
}

TEST(RecordOfSections, HasItsOwnCapturesAndAnnotations)
{
    const QJsonObject sigmf = recordOfParts(gappedRecord(), {{400, 800}, {1600, 2600}}).sigmf;
    EXPECT_FALSE(sigmf["global"].toObject().contains("core:sha512"));
    const QJsonArray captures{
        startingAt(0, {{"core:frequency", 100}, {"core:datetime", "1970-01-01T00:16:40.100000Z"}}),
        startingAt(100, {{"core:frequency", 100}, {"core:datetime", "1970-01-01T00:16:40.400000Z"}}),
        startingAt(200, {{"core:frequency", 200}})};
    EXPECT_EQ(sigmf["captures"].toArray(), captures);
    const QJsonArray annotations{startingAt(0, {{"core:sample_count", 50}, {"core:label", "a"}}),
                                 startingAt(300, {{"core:label", "b"}})};
    EXPECT_EQ(sigmf["annotations"].toArray(), annotations);
}

TEST(RecordOfSections, CountsItsSamplesFromItsOwnFirst)
{
    Record record = gappedRecord();
    record.sigmf["global"] = QJsonObject{{"core:datatype", "ci16_le"}, {"core:sample_rate", 1000.0}, {"core:offset", 9000}};
    record.sigmf["captures"] = QJsonArray{startingAt(9000, {}), startingAt(9500, {{"core:frequency", 200}})};
    record.sigmf["annotations"] = QJsonArray{startingAt(9600, {{"core:label", "b"}})};
    const QJsonObject sigmf = recordOfParts(record, {{1600, 2600}}).sigmf;
    EXPECT_FALSE(sigmf["global"].toObject().contains("core:offset"));
    EXPECT_EQ(sigmf["captures"].toArray().at(1), startingAt(100, {{"core:frequency", 200}}));
    EXPECT_EQ(sigmf["annotations"].toArray().at(0), startingAt(200, {{"core:label", "b"}}));
}

} // namespace

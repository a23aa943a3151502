#include "apps/korvectl/failure.h"
#include "apps/korvectl/recordscale.h"

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

constexpr quint64 beginUs = 1'795'264'342'000'000;

/// Two seconds of 8000 samples, each of two bytes.
KORVE_XML::KORVE_RecordData twoSeconds()
{
    KORVE_XML::KORVE_RecordData record;
    record.SetStartTime(beginUs);
    record.SetStopTime(beginUs + 2'000'000);
    record.SetSize(32000);
    KORVE_XML::IndexEntry entry;
    entry.SetRecordOffset(0);
    entry.SetTimestamp(beginUs);
    entry.SetSampleRate(8000);
    record.AppendIndexEntry(entry);
    return record;
}

Section section(const char *word)
{
    return Section::parsed(QLatin1String(word)).value();
}

ByteRange rangeOf(const char *word)
{
    return RecordScale(twoSeconds()).rangeOf(section(word));
}

} // namespace

TEST(RecordScale, KnowsTheSamples)
{
    EXPECT_EQ(RecordScale(twoSeconds()).sampleRateHz(), 8000u);
    EXPECT_EQ(RecordScale(twoSeconds()).sampleBytes(), 2u);
}

TEST(RecordScale, CutsTimesToWholeSamples)
{
    EXPECT_EQ(rangeOf("0.5s:1.5s"), (ByteRange{8000, 24000}));
    EXPECT_EQ(rangeOf("0.3s:"), (ByteRange{4800, 32000}));
    EXPECT_EQ(rangeOf("187us:312us"), (ByteRange{2, 4})); // 125 us each
    EXPECT_EQ(rangeOf(":2s"), (ByteRange{0, 32000}));
}

TEST(RecordScale, FindsASampleWhoseTimeIsNoExactNumber)
{
    EXPECT_EQ(rangeOf("125125us:"), (ByteRange{2002, 32000})); // 1000.9999999999999 of it as a double
}

TEST(RecordScale, TakesBytesAsTheyAre)
{
    EXPECT_EQ(rangeOf("1:7"), (ByteRange{1, 7}));
    EXPECT_EQ(rangeOf("8000:1s"), (ByteRange{8000, 16000}));
}

TEST(RecordScale, RefusesWhatIsNotThere)
{
    EXPECT_THROW(rangeOf("0:32001"), Failure);
    EXPECT_THROW(rangeOf("1s:2.1s"), Failure);
    EXPECT_THROW(rangeOf("16000:1s"), Failure);
    EXPECT_THROW(rangeOf("24000:1s"), Failure);
}

TEST(RecordScale, IsAllOfTheRecordUnlessToldOtherwise)
{
    const RecordScale scale(twoSeconds());
    EXPECT_EQ(scale.rangesOf({}), (QVector<ByteRange>{{0, 32000}}));
    EXPECT_EQ(scale.rangesOf({section("0:2"), section("1s:2s")}), (QVector<ByteRange>{{0, 2}, {16000, 32000}}));
}

TEST(RecordScale, CountsMomentsFromTheBeginning)
{
    const RecordScale scale(twoSeconds());
    EXPECT_EQ(scale.instantOf({Moment::Kind::AfterBegin, 5}), beginUs + 5);
    EXPECT_EQ(scale.instantOf({Moment::Kind::Absolute, 5}), 5u);
    EXPECT_THROW(scale.instantOf({Moment::Kind::AfterBegin, ~quint64{0}}), Failure) << "it would be before the beginning";
}

TEST(RecordScale, OfARecordWithoutDurationKnowsBytesAlone)
{
    KORVE_XML::KORVE_RecordData record = twoSeconds();
    record.SetStopTime(beginUs);
    EXPECT_EQ(RecordScale(record).bytesAt({7, false}), 7u);
    EXPECT_THROW(RecordScale(record).bytesAt({7, true}), Failure);
}

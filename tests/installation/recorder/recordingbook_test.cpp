#include "installation/recorder/recordingbook.h"

#include "installation/recorder/recordingformat.h"
#include "installation/recorder/recordingwriter.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QJsonArray>

using namespace installation::recorder;

namespace
{

/// A recording of samples of four bytes, whose file has 8000 of them.
class Book : public testing::Test
{
protected:
    Book() { begin({}); }
    void begin(const RecordingWish &wish)
    {
        id = store.ask([wish](RecordStore &records) {
            const RecordStore::Reservation place = records.reserve();
            writeWhole(place.samplesPath, {});
            Record record = newRecording(wish, 1);
            record.id = place.id;
            records.adopt(record);
            return place.id;
        });
        const QString path = store.ask([id = id](RecordStore &records) { return records.samplesPath(id); });
        writeFile(path, QByteArray(8000, 's'));
    }
    Record record()
    {
        return store.ask([id = id](RecordStore &records) { return records.record(id); });
    }

    QTemporaryDir directory;
    StoreThread store{directory.filePath("state")};
    QString id;
};

TEST_F(Book, KnowsHowEachLinkWasSet)
{
    RecordingBook(store, id).close({400, 8000, 70'000, {{0, 1000, 98'500'000, 1'000'000, 0}, {4000, 50'000, 100'000'000, 2'000'000, 0}}}, {});
    const Record closed = record();
    const QVector<IndexEntry> expected{{0, 1100, 98'500'000, 1'000'000, 1'000'000},
                                       {3600, 50'000, 100'000'000, 2'000'000, 2'000'000},
                                       {7600, 50'500, 100'000'000, 2'000'000, 2'000'000}};
    EXPECT_EQ(closed.index, expected);
    EXPECT_EQ(closed.startUs, 1100u);
    EXPECT_EQ(closed.stopUs, 50'500u);
    const QJsonArray captures = closed.sigmf.value("captures").toArray();
    ASSERT_EQ(captures.size(), 2);
    EXPECT_EQ(captures[0].toObject().value("core:sample_start").toInt(), 0);
    EXPECT_EQ(captures[1].toObject().value("core:sample_start").toInt(), 900);
    EXPECT_EQ(captures[1].toObject().value("core:frequency").toDouble(), 100e6);
}

TEST_F(Book, HasHalfOfTheRateAsBandwidthOfRealSamples)
{
    begin({.format = KORVE_XML::KORVE_RecordData::ANALOG_AUDIO});
    RecordingBook(store, id).close({0, 8000, 70'000, {{0, 1000, 98'500'000, 48'000, 0}}}, {});
    EXPECT_EQ(record().index.first().bandwidthHz, 24'000u);
    EXPECT_EQ(record().index.last().bandwidthHz, 24'000u);
}

TEST_F(Book, RoundsTimesToTheNearestMicrosecond)
{
    RecordingBook(store, id).close({0, 8, 70'000, {{0, 1000, 0, 3'000'000, 0}}}, {}); // two samples, 0.67 us
    EXPECT_EQ(record().stopUs, 1001u);
}

TEST_F(Book, ForgetsSamplesThatWereGivenUp)
{
    const QString path = store.ask([id = id](RecordStore &records) { return records.samplesPath(id); });
    RecordingWriter writer(path, sampleLayout(newRecording({}, 1)), 0);
    writer.write(QByteArray(8000, 's').constData(), 8000, false);
    RecordingBook book(store, id);
    book.note({0, 8000, 70'000, {{0, 1000, 0, 1'000'000, 0}}});
    writer.giveUp(400);
    book.close({0, writer.end(), 70'000, {{0, 1000, 0, 1'000'000, 0}}}, {});
    EXPECT_EQ(record().sizeBytes, 7600u);
    EXPECT_EQ(readFile(path), QByteArray(7600, 's'));
}

TEST_F(Book, TakesTimesFromTheClockWithoutARate)
{
    RecordingBook(store, id).close({0, 8000, 70'000, {{0, 1000, 0, 0, 0}}}, {});
    EXPECT_EQ(record().startUs, 1000u);
    EXPECT_EQ(record().stopUs, 70'000u);
}

} // namespace

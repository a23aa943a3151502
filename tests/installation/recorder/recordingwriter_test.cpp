#include "installation/recorder/recordingwriter.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/wordorder.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

using namespace installation::recorder;

namespace
{

/// Samples of four bytes, in two numbers.
class Writer : public testing::Test
{
protected:
    static void write(RecordingWriter &writer, const QByteArray &bytes, bool swapped = false)
    {
        writer.write(bytes.constData(), bytes.size(), swapped);
    }
    qint64 roomBytes() const { return qint64(fileStatus(path).st_blocks) * 512; }

    QTemporaryDir directory;
    const QString path = directory.filePath("samples");
    const SampleLayout layout{*SampleFormat::ofSigmf(QStringLiteral("ci16_le")), 1};
};

TEST_F(Writer, JoinsSamplesThatComeInPieces)
{
    RecordingWriter writer(path, layout, 0);
    for (const char *piece : {"abc", "d", "efghi", "jk"})
        write(writer, piece);
    EXPECT_EQ(writer.end(), 8u);
    EXPECT_EQ(readFile(path), "abcdefgh");
}

TEST_F(Writer, TurnsNumbersThatComeInPieces)
{
    RecordingWriter writer(path, layout, 0);
    write(writer, "abc", true);
    write(writer, "defgh", true);
    EXPECT_EQ(readFile(path), "badcfehg");
}

TEST(WordOrder, IsTurnedForNumbersOfEachSize)
{
    const auto turned = [](QByteArray bytes, unsigned wordBytes) {
        swapWords(bytes.data(), quint64(bytes.size()), wordBytes);
        return bytes;
    };
    EXPECT_EQ(turned("abcdefghijklmnop", 1), "abcdefghijklmnop");
    EXPECT_EQ(turned("abcdefghijklmnop", 2), "badcfehgjilknmpo");
    EXPECT_EQ(turned("abcdefghijklmnop", 4), "dcbahgfelkjiponm");
    EXPECT_EQ(turned("abcdefghijklmnop", 8), "hgfedcbaponmlkji");
}

TEST_F(Writer, TurnsSamplesOfSixteenBytes)
{
    RecordingWriter writer(path, {*SampleFormat::ofSigmf(QStringLiteral("cf64_le")), 1}, 0);
    write(writer, "abcdefghijk", true);
    write(writer, "lmnopq", true);
    EXPECT_EQ(writer.end(), 16u);
    EXPECT_EQ(readFile(path), "hgfedcbaponmlkji");
}

TEST_F(Writer, GivesTheRoomOfALoopsBeginningBack)
{
    RecordingWriter writer(path, layout, 1 << 20);
    for (int i = 0; i < 8; ++i) {
        write(writer, QByteArray(1 << 20, char('a' + i)));
        writer.release(writer.begin());
    }
    EXPECT_EQ(writer.begin(), 7u << 20);
    EXPECT_EQ(writer.end(), 8u << 20);
    EXPECT_LE(roomBytes(), (1 << 20) + (1 << 16));
    EXPECT_EQ(readFile(path).right(1 << 20), QByteArray(1 << 20, 'h'));
}

TEST_F(Writer, KeepsNothingOfALoopThatItHasGivenBack)
{
    RecordingWriter writer(path, layout, 1 << 20);
    write(writer, QByteArray(3 << 20, 'x'));
    writer.release(writer.begin());
    writer.giveUp(1 << 18);
    EXPECT_EQ(writer.begin(), 2u << 20);
    EXPECT_EQ(writer.end(), (3u << 20) - (1 << 18));
    writer.giveUp(1 << 20);
    EXPECT_EQ(writer.begin(), 2u << 20);
    EXPECT_EQ(writer.end(), (2u << 20) + (3 << 17)); // half of what there was
    EXPECT_FALSE(readFile(path).mid(2 << 20, 3 << 17).contains('\0'));
    EXPECT_LE(roomBytes(), (3 << 17) + (1 << 16));
    EXPECT_EQ(readFile(path).size(), 3 << 20);
}

TEST_F(Writer, BeginsWithASampleAgain)
{
    RecordingWriter writer(path, layout, 0);
    write(writer, "abcdef");
    writer.dropBegun();
    write(writer, "ghij");
    EXPECT_EQ(readFile(path), "abcdghij");
}

TEST_F(Writer, KeepsWholeSamplesOfAFullDisk)
{
    RecordingWriter writer(path, layout, 0);
    {
        const FullDisk limit(1001);
        try {
            write(writer, QByteArray(4000, 'x'));
            ADD_FAILURE() << "it was taken";
        } catch (const RecorderError &error) {
            EXPECT_EQ(error.kind(), TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
        }
    }
    writer.cut();
    EXPECT_EQ(writer.end(), 1000u);
    EXPECT_EQ(readFile(path), QByteArray(1000, 'x'));
    write(writer, "abcd");
    EXPECT_EQ(readFile(path).right(8), "xxxxabcd");
}

} // namespace

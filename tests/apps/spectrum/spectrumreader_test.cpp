#include "apps/spectrum/spectrumreader.h"
#include "tests/apps/spectrum/spectrumbytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

using namespace apps;

namespace
{

/// The end of a stream of these bytes.
void readAll(const QByteArray &bytes)
{
    SpectrumReader reader;
    reader.add(bytes);
    while (reader.next())
        continue;
    reader.requireComplete();
}

TEST(SpectrumReader, ReadsBytesThatWereWrittenByHand)
{
    SpectrumReader reader;
    reader.add(QByteArray::fromHex("4b4f525645535043 01000000 02000000 03000000 02000000 0100000000000000 "
                                   "0400000000000000 0c00000000000000 80bb000000000000 0100000001000000 "
                                   "0000000000000000 0400000000000000 40e2010000000000 0000c0bf 000048c2"));
    const SpectrumHead expected{2, 3, 2, 1, 4, 12, 48000, 4'294'967'297};
    EXPECT_EQ(reader.head(), expected);
    const std::optional<SpectrumLine> line = reader.next();
    ASSERT_TRUE(line);
    EXPECT_EQ(line->number, 0u);
    EXPECT_EQ(line->position, 4u);
    EXPECT_EQ(line->timestampUs, 123'456u);
    EXPECT_EQ(line->levels, (QVector<float>{-1.5F, -50.0F}));
    reader.requireComplete();
}

TEST(SpectrumReader, TakesPiecesOfAnySize)
{
    for (const int size : {1, 3, 64, 65, 1000}) {
        SpectrumReader reader;
        QVector<quint64> positions;
        const QByteArray whole = SpectrumBytes().whole();
        for (int begin = 0; begin < whole.size(); begin += size) {
            reader.add(whole.mid(begin, size));
            while (const auto line = reader.next())
                positions.append(line->position);
        }
        EXPECT_EQ(positions, (QVector<quint64>{400, 784})) << size;
        EXPECT_TRUE(reader.isComplete());
        EXPECT_FALSE(reader.next());
    }
}

TEST(SpectrumReader, NoticesEachPlaceWhereAStreamIsCut)
{
    const QByteArray whole = SpectrumBytes().whole();
    for (int size = 0; size < whole.size(); ++size)
        EXPECT_THROW(readAll(whole.left(size)), SpectrumError) << size;
    EXPECT_NO_THROW(readAll(whole));
}

TEST(SpectrumReader, NoticesBytesBehindTheLastLine)
{
    EXPECT_THROW(readAll(SpectrumBytes().whole() + 'x'), SpectrumError);
    SpectrumReader reader;
    reader.add(SpectrumBytes().whole());
    while (reader.next())
        continue;
    EXPECT_THROW(reader.add("x"), SpectrumError);
    EXPECT_THROW(reader.add(""), SpectrumError);
}

TEST(SpectrumReader, RefusesForeignBytesAtTheFirstThatIsWrong)
{
    EXPECT_THROW(SpectrumReader().add("HTTP"), SpectrumError);
    EXPECT_THROW(SpectrumReader().add("KORVESPX"), SpectrumError);
    EXPECT_THROW(SpectrumReader().add(QByteArray(1, '\0')), SpectrumError);
}

struct WrongHead {
    const char *name;
    std::function<void(SpectrumBytes &)> spoil;
};

class SpectrumHeads : public testing::TestWithParam<WrongHead>
{
};

TEST_P(SpectrumHeads, AreCheckedBeforeTheyAreBelieved)
{
    SpectrumBytes bytes;
    GetParam().spoil(bytes);
    SpectrumReader reader;
    EXPECT_THROW(reader.add(bytes.head()), SpectrumError);
    EXPECT_FALSE(reader.head());
    EXPECT_FALSE(reader.next());
}

INSTANTIATE_TEST_SUITE_P(
    Wrong, SpectrumHeads,
    testing::Values(WrongHead{"Version", [](auto &bytes) { bytes.version = 2; }},
                    WrongHead{"NoTransform", [](auto &bytes) { bytes.fftSize = bytes.valuesPerLine = 0; }},
                    WrongHead{"HugeTransform",
                              [](auto &bytes) { bytes.fftSize = bytes.valuesPerLine = (1 << 20) + 1; }},
                    WrongHead{"Window", [](auto &bytes) { bytes.window = 5; }},
                    WrongHead{"ValuesPerLine", [](auto &bytes) { bytes.valuesPerLine = 5; }},
                    WrongHead{"HugeLine", [](auto &bytes) { bytes.valuesPerLine = 0xffffffff; }},
                    WrongHead{"NoLines", [](auto &bytes) { bytes.lineCount = 0; }},
                    WrongHead{"TooManyLines", [](auto &bytes) { bytes.lineCount = 10'000'001; }},
                    WrongHead{"EmptySection", [](auto &bytes) { bytes.stopPosition = bytes.startPosition; }}),
    [](const auto &info) { return std::string(info.param.name); });

struct WrongLine {
    const char *name;
    QByteArray line;
};

class SpectrumLines : public testing::TestWithParam<WrongLine>
{
};

TEST_P(SpectrumLines, AreCheckedOneByOne)
{
    SpectrumReader reader;
    reader.add(SpectrumBytes().head() + SpectrumBytes::line(0, 440, {0, 0, 0, 0}) + GetParam().line);
    EXPECT_TRUE(reader.next());
    EXPECT_THROW(reader.next(), SpectrumError);
    EXPECT_THROW(reader.next(), SpectrumError);
    EXPECT_FALSE(reader.isComplete());
}

INSTANTIATE_TEST_SUITE_P(
    Wrong, SpectrumLines,
    testing::Values(WrongLine{"Repeated", SpectrumBytes::line(0, 440, {0, 0, 0, 0})},
                    WrongLine{"Skipped", SpectrumBytes::line(2, 440, {0, 0, 0, 0})},
                    WrongLine{"Backward", SpectrumBytes::line(1, 436, {0, 0, 0, 0})},
                    WrongLine{"BehindTheEnd", SpectrumBytes::line(1, 800, {0, 0, 0, 0})},
                    WrongLine{"NoNumber", SpectrumBytes::line(1, 440, {0, std::nanf(""), 0, 0})},
                    WrongLine{"Infinite",
                              SpectrumBytes::line(1, 440, {0, 0, 0, std::numeric_limits<float>::infinity()})}),
    [](const auto &info) { return std::string(info.param.name); });

} // namespace

#include "apps/korvectl/framereceiver.h"
#include "apps/korvectl/spectrumpicture.h"
#include "tests/apps/spectrum/spectrumbytes.h"

#include <QTcpSocket>

#include <gmock/gmock.h>

#include <limits>

using namespace korvectl;

namespace
{

apps::SpectrumLine line(std::initializer_list<float> values)
{
    return {0, 0, 0, QVector<float>(values)};
}

constexpr float nothing = -std::numeric_limits<float>::infinity();

} // namespace

TEST(SpectrumPicture, IsBrightWhereItIsLoud)
{
    const SpectrumPicture picture({line({-90, -90, -10, -90}), line({-90, -90, -90, -50})});
    ASSERT_EQ(picture.image().size(), QSize(4, 2));
    EXPECT_EQ(picture.floorLevel(), -90);
    EXPECT_EQ(picture.ceilingLevel(), -10);
    EXPECT_EQ(picture.image().pixel(0, 0), SpectrumPicture::colour(0));
    EXPECT_EQ(picture.image().pixel(2, 0), SpectrumPicture::colour(1));
    EXPECT_EQ(picture.image().pixel(3, 1), SpectrumPicture::colour(0.5));
    EXPECT_LT(qGray(SpectrumPicture::colour(0.5)), qGray(SpectrumPicture::colour(1)));
    EXPECT_LT(qGray(SpectrumPicture::colour(0)), qGray(SpectrumPicture::colour(0.5)));
}

TEST(SpectrumPicture, ShowsTheLoudestOfThoseThatShareAColumn)
{
    const SpectrumPicture picture({line({-90, -90, -10, -90, -90, -90})}, 3);
    ASSERT_EQ(picture.image().width(), 3);
    EXPECT_EQ(picture.image().pixel(0, 0), SpectrumPicture::colour(0));
    EXPECT_EQ(picture.image().pixel(1, 0), SpectrumPicture::colour(1));
    EXPECT_EQ(SpectrumPicture({line({-90, -10})}, 4).image().width(), 4) << "more columns than values";
}

TEST(SpectrumPicture, BearsSilenceAndNothing)
{
    EXPECT_EQ(SpectrumPicture({line({nothing, nothing})}).image().pixel(0, 0), SpectrumPicture::colour(0));
    EXPECT_TRUE(SpectrumPicture({}).image().isNull());
}

TEST(Spectrum, KnowsTheFrequenciesOfItsEnds)
{
    const apps::SpectrumHead complex{4, 0, 4, 1, 0, 16, 1'000'000, 100'000'000};
    EXPECT_EQ((Spectrum{complex, {}}.lowestFrequency()), 99.5e6);
    EXPECT_EQ((Spectrum{complex, {}}.highestFrequency()), 100.25e6);
    const apps::SpectrumHead real{4, 0, 3, 1, 0, 16, 1'000'000, 100'000'000};
    EXPECT_EQ((Spectrum{real, {}}.lowestFrequency()), 0);
    EXPECT_EQ((Spectrum{real, {}}.highestFrequency()), 500e3);
}

TEST(FrameReceiver, KeepsTheLoudestWhereALineHasMoreThanIsWanted)
{
    for (const auto &[columns, kept] : {std::pair(2, QVector<float>{-1, 0.5F}),
                                        std::pair(FrameReceiver::allColumns, QVector<float>{-1, -2, -3, 0.5F})}) {
        FrameReceiver receiver;
        QTcpSocket device;
        device.connectToHost(receiver.host(), receiver.port());
        ASSERT_TRUE(device.waitForConnected());
        device.write(SpectrumBytes().whole());
        ASSERT_TRUE(device.waitForBytesWritten());
        const Spectrum spectrum = receiver.receive(std::chrono::seconds(30), columns);
        ASSERT_EQ(spectrum.lines.size(), 2);
        EXPECT_EQ(spectrum.lines.first().levels, kept);
        EXPECT_EQ(spectrum.head.valuesPerLine, 4u);
    }
}

TEST(SpectrumPicture, IsDrawnInLetters)
{
    const SpectrumPicture picture({line({-90, -90, -90, -10})});
    EXPECT_EQ(shadedBlocks(picture.image()), QStringLiteral("   \u2588\n"));
    const QString coloured = colouredBlocks(picture.image());
    EXPECT_EQ(coloured.count(QChar(0x2580)), 4);
    EXPECT_TRUE(coloured.endsWith(QLatin1String("\x1b[0m\n")));
}

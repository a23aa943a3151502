#include "installation/recorder/spectrum/decibels.h"
#include "installation/recorder/spectrum/spectrumline.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <limits>
#include <numbers>

using namespace installation::recorder;

namespace
{

/// Samples between -1 and 1; the imaginary part is of use to complex formats alone.
using Signal = std::vector<std::complex<double>>;

Signal tone(unsigned size, double turns, double amplitude = 1)
{
    Signal signal(size);
    for (unsigned i = 0; i < size; ++i)
        signal[i] = std::polar(amplitude, 2 * std::numbers::pi * turns * i / size);
    return signal;
}

Signal operator+(Signal a, const Signal &b)
{
    std::transform(a.begin(), a.end(), b.begin(), a.begin(), std::plus());
    return a;
}

template <typename Number> void append(QByteArray &bytes, double value, bool isBigEndian)
{
    constexpr bool isInteger = std::is_integral_v<Number>;
    const double half = std::exp2(8 * sizeof(Number) - 1);
    const double top = isInteger ? half - 1 : 1; // +1 itself has no integer
    const double zero = isInteger && std::is_unsigned_v<Number> ? half : 0;
    const auto number = static_cast<Number>(isInteger ? std::round(value * top) + zero : value);
    char place[sizeof number];
    isBigEndian ? qToBigEndian(number, place) : qToLittleEndian(number, place);
    bytes.append(place, sizeof number);
}

void append(QByteArray &bytes, double value, const QString &datatype)
{
    const bool isBigEndian = datatype.endsWith("_be");
    const QString kind = datatype.mid(1).section('_', 0, 0);
    if (kind == "f64")
        append<double>(bytes, value, isBigEndian);
    else if (kind == "f32")
        append<float>(bytes, value, isBigEndian);
    else if (kind == "i32")
        append<qint32>(bytes, value, isBigEndian);
    else if (kind == "u32")
        append<quint32>(bytes, value, isBigEndian);
    else if (kind == "i16")
        append<qint16>(bytes, value, isBigEndian);
    else if (kind == "u16")
        append<quint16>(bytes, value, isBigEndian);
    else if (kind == "i8")
        append<qint8>(bytes, value, isBigEndian);
    else
        append<quint8>(bytes, value, isBigEndian);
}

/// @p signal in the first of @p channels channels, noise of full scale in the others.
QByteArray samplesOf(const Signal &signal, const QString &datatype, unsigned channels = 1)
{
    QByteArray bytes;
    for (std::size_t i = 0; i < signal.size(); ++i)
        for (unsigned channel = 0; channel < channels; ++channel) {
            const std::complex<double> value = channel == 0 ? signal[i] : (i * 7 % 5 < 2 ? 1 : -1);
            append(bytes, value.real(), datatype);
            if (datatype.startsWith('c'))
                append(bytes, value.imag(), datatype);
        }
    return bytes;
}

std::vector<float> levelsOf(const QByteArray &samples, const QString &datatype, SpectrumWindow window, unsigned size,
                            unsigned channels = 1)
{
    SpectrumLine line({*SampleFormat::ofSigmf(datatype), channels}, window, size);
    EXPECT_EQ(line.stretchBytes(), std::size_t(samples.size()));
    std::vector<float> levels(line.valueCount());
    line.compute(samples.constData(), levels.data());
    return levels;
}

std::vector<float> levelsOf(const Signal &signal, const QString &datatype,
                            SpectrumWindow window = SpectrumWindow::Hanning)
{
    return levelsOf(samplesOf(signal, datatype), datatype, window, static_cast<unsigned>(signal.size()));
}

std::size_t loudest(const std::vector<float> &levels)
{
    return std::max_element(levels.begin(), levels.end()) - levels.begin();
}

class EachWindow : public testing::TestWithParam<SpectrumWindow>
{
};

TEST_P(EachWindow, ShowsAComplexToneOfFullScaleAtZero)
{
    const std::vector<float> levels = levelsOf(tone(1024, 100), "cf32_le", GetParam());
    ASSERT_EQ(levels.size(), 1024u);
    EXPECT_EQ(loudest(levels), 512u + 100u);
    EXPECT_NEAR(levels[612], 0, 0.002);
    EXPECT_LT(levels[612 + 200], -50);
    EXPECT_LT(levels[512 - 100], -50); // no mirror
}

TEST_P(EachWindow, ShowsANegativeFrequencyBelowTheMiddle)
{
    const std::vector<float> levels = levelsOf(tone(1024, -512), "cf32_le", GetParam());
    EXPECT_EQ(loudest(levels), 0u);
    EXPECT_NEAR(levels[0], 0, 0.002);
}

TEST_P(EachWindow, ShowsARealSineOfFullScaleAtZero)
{
    const std::vector<float> levels = levelsOf(tone(1024, 100), "rf32_le", GetParam());
    ASSERT_EQ(levels.size(), 513u);
    EXPECT_EQ(loudest(levels), 100u);
    EXPECT_NEAR(levels[100], 0, 0.01); // its mirror reaches here by the window's side lobes
}

TEST_P(EachWindow, ShowsAConstantOfFullScaleAtZero)
{
    const std::vector<float> complex = levelsOf(tone(1024, 0), "cf32_le", GetParam());
    EXPECT_EQ(loudest(complex), 512u);
    EXPECT_NEAR(complex[512], 0, 0.002);
    const std::vector<float> real = levelsOf(tone(1024, 0), "rf32_le", GetParam());
    EXPECT_NEAR(real[0], 0, 0.002);
    const std::vector<float> alternating = levelsOf(tone(1024, 512), "rf32_le", GetParam());
    EXPECT_NEAR(alternating[512], 0, 0.002);
}

TEST_P(EachWindow, TellsTwoTonesApart)
{
    const std::vector<float> levels = levelsOf(tone(2048, 300, 0.5) + tone(2048, -700, 0.005), "cf32_le", GetParam());
    EXPECT_NEAR(levels[1024 + 300], -6.02, 0.05);
    EXPECT_NEAR(levels[1024 - 700], -46.02, 0.1);
    EXPECT_LT(levels[1024 + 700], -60);
}

TEST_P(EachWindow, WorksForAnyLength)
{
    for (const unsigned size : {2u, 3u, 5u, 7u, 17u, 30u, 1009u, 4095u}) {
        const std::vector<float> levels = levelsOf(tone(size, 0), "cf32_le", GetParam());
        ASSERT_EQ(levels.size(), size);
        EXPECT_NEAR(levels[size / 2], 0, 0.002) << size;
        EXPECT_EQ(levelsOf(tone(size, 0), "rf32_le", GetParam()).size(), size / 2 + 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Windows, EachWindow,
                         testing::Values(SpectrumWindow::Rectangle, SpectrumWindow::Hamming, SpectrumWindow::Hanning,
                                         SpectrumWindow::Kaiser, SpectrumWindow::Blackman));

TEST(Windows, DifferInTheirSideLobes)
{
    const auto farAway = [](SpectrumWindow window) {
        return levelsOf(tone(1024, 100.5), "cf64_le", window)[512 + 120];
    };
    EXPECT_NEAR(farAway(SpectrumWindow::Rectangle), -35.7, 0.5);
    EXPECT_LT(farAway(SpectrumWindow::Hamming), -50);
    EXPECT_LT(farAway(SpectrumWindow::Hanning), -80);
    EXPECT_LT(farAway(SpectrumWindow::Blackman), -90);
    EXPECT_LT(farAway(SpectrumWindow::Kaiser), -95);
}

class EachFormat : public testing::TestWithParam<const char *>
{
};

TEST_P(EachFormat, IsReadAlike)
{
    for (const char *prefix : {"c", "r"}) {
        const QString datatype = QString(prefix) + GetParam();
        const std::vector<float> levels = levelsOf(tone(256, 32), datatype);
        const std::size_t place = *prefix == 'c' ? 128 + 32 : 32;
        EXPECT_EQ(loudest(levels), place) << prefix;
        EXPECT_NEAR(levels[place], 0, QString(GetParam()).endsWith('8') ? 0.1 : 0.01) << prefix; // +1 is 127 of 128
        EXPECT_LT(levels[place + 64], -45) << prefix;
    }
}

TEST_P(EachFormat, IsReadFromTheFirstOfSeveralChannels)
{
    const QString datatype = QString("r") + GetParam();
    const std::vector<float> levels =
        levelsOf(samplesOf(tone(256, 32), datatype, 3), datatype, SpectrumWindow::Hanning, 256, 3);
    EXPECT_NEAR(levels[32], 0, 0.1);
    EXPECT_LT(levels[96], -45);
}

INSTANTIATE_TEST_SUITE_P(Formats, EachFormat,
                         testing::Values("f64_le", "f64_be", "f32_le", "f32_be", "i32_le", "i32_be", "u32_le", "u32_be",
                                         "i16_le", "i16_be", "u16_le", "u16_be", "i8", "u8"));

TEST(Levels, OfSilenceAndOfWhatIsNoNumberAreTheLeast)
{
    const std::vector<float> silence = levelsOf(Signal(64), "ci16_le");
    EXPECT_EQ(std::count(silence.begin(), silence.end(), silenceDb), 64);
    Signal broken = tone(64, 3);
    broken[7] = std::numeric_limits<double>::quiet_NaN();
    const std::vector<float> noNumbers = levelsOf(broken, "cf32_le");
    EXPECT_EQ(std::count(noNumbers.begin(), noNumbers.end(), silenceDb), 64);
}

TEST(Levels, OfWhatIsInfiniteAreGreatNumbers)
{
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float part : {infinite, -infinite, 3e19F}) {
        const float number[]{part, 1};
        float level = 0;
        toDecibels(number, 1, 1, &level);
        EXPECT_TRUE(level > 379 && level < 400) << level;
    }
}

TEST(Levels, AreNeverBelowTheLeast)
{
    for (float part = 1e-16F; part < 2e-15F; part *= 1.00001F) {
        const float number[]{part, 0};
        float level = 0;
        toDecibels(number, 1, 1, &level);
        ASSERT_GE(level, silenceDb) << part;
    }
}

TEST(Levels, AreExactToAThousandth)
{
    for (double db = -290; db < 300; db += 0.37) {
        const float number[]{static_cast<float>(std::pow(10, db / 20) * 0.6),
                             static_cast<float>(std::pow(10, db / 20) * 0.8)};
        float level = 0;
        toDecibels(number, 1, 1, &level);
        EXPECT_NEAR(level, db, 0.001);
    }
}

} // namespace

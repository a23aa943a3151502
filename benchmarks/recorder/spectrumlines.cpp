#include "benchmarks/support/require.h"
#include "installation/recorder/overviewspectrum.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

#include <fftw3.h>

#include <cmath>
#include <random>
#include <vector>

using namespace installation::recorder;

namespace
{

constexpr unsigned fftSize = 4096;
constexpr quint64 lineCount = 2048;
constexpr quint64 sampleCount = fftSize * lineCount;
constexpr quint64 sampleBytes = 4;

struct Release {
    void operator()(void *memory) const { fftwf_free(memory); }
};
using Numbers = std::unique_ptr<fftwf_complex[], Release>;

Numbers allocate(std::size_t count)
{
    return Numbers(fftwf_alloc_complex(count));
}

/// Noise, as 16-bit samples in a file that the system keeps in memory, and as the numbers that it stands for.
class Noise
{
public:
    Noise() : numbers(allocate(sampleCount))
    {
        std::mt19937 random(1);
        std::normal_distribution<float> level(0, 3000);
        std::vector<qint16> samples(2 * sampleCount);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = static_cast<qint16>(std::lround(level(random)));
            numbers[i / 2][i % 2] = samples[i] / 32768.0F;
        }
        QFile file(path());
        const auto bytes = static_cast<qint64>(samples.size() * sizeof samples[0]);
        require(file.open(QIODevice::WriteOnly) &&
                    file.write(reinterpret_cast<const char *>(samples.data()), bytes) == bytes,
                "the samples are written");
    }

    QString path() const { return folder.filePath(QStringLiteral("noise.sigmf-data")); }
    fftwf_complex *line(quint64 number) const { return numbers.get() + number * fftSize; }
    Record record() const
    {
        Record record;
        record.sizeBytes = sampleCount * sampleBytes;
        record.index = {{0, 0, 0, 20'000'000, 20'000'000}};
        record.sigmf[QStringLiteral("global")] = QJsonObject{
            {QStringLiteral("core:datatype"), QStringLiteral("ci16_le")}, {QStringLiteral("core:sample_rate"), 20e6}};
        return record;
    }

private:
    const QTemporaryDir folder;
    const Numbers numbers;
};

const Noise &noise()
{
    static const Noise noise;
    return noise;
}

OverviewSpectrum spectrumWith(SpectrumWindow window)
{
    const SpectrumRequest whole{0, sampleCount * sampleBytes, lineCount, fftSize, static_cast<quint32>(window)};
    return {noise().record(), noise().path(), whole};
}

/// FFTW by itself.
class Bare
{
public:
    Bare()
        : output(allocate(fftSize)),
          plan(fftwf_plan_dft_1d(fftSize, Numbers(allocate(fftSize)).get(), output.get(), FFTW_FORWARD, FFTW_MEASURE))
    {
    }
    Bare(const Bare &) = delete;
    ~Bare() { fftwf_destroy_plan(plan); }

    const fftwf_complex *transform(quint64 line) const
    {
        fftwf_execute_dft(plan, noise().line(line), output.get());
        return output.get();
    }

private:
    const Numbers output;
    const fftwf_plan plan;
};

/// With the rectangle, which changes nothing, the levels are those of the bare transform.
void requireSameLevels(const Bare &bare)
{
    OverviewSpectrum spectrum = spectrumWith(SpectrumWindow::Rectangle);
    const QByteArray bytes = spectrum.lines(17, 1);
    const auto *levels = reinterpret_cast<const float *>(bytes.constData() + 24);
    const fftwf_complex *numbers = bare.transform(17);
    for (unsigned i = 0; i < fftSize; ++i) {
        const fftwf_complex &number = numbers[(i + fftSize / 2) % fftSize];
        const double level = 20 * std::log10(std::hypot(number[0], number[1]) / fftSize);
        require(std::abs(levels[i] - level) < 0.01, "both have the same levels");
    }
}

void overviewLines(benchmark::State &state)
{
    OverviewSpectrum spectrum = spectrumWith(SpectrumWindow::Hanning);
    QByteArray target(static_cast<int>(spectrum.lineBytes()), Qt::Uninitialized);
    quint64 line = 0;
    for (auto _ : state) {
        spectrum.writeLine(line, target.data());
        line = (line + 1) % lineCount;
    }
}

void bareTransforms(benchmark::State &state)
{
    const Bare bare;
    requireSameLevels(bare);
    quint64 line = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare.transform(line));
        line = (line + 1) % lineCount;
    }
}

BENCHMARK(overviewLines)->Name("spectrum.lines/ours");
BENCHMARK(bareTransforms)->Name("spectrum.lines/floor");

} // namespace

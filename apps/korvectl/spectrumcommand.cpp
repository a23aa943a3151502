#include "apps/korvectl/spectrumcommand.h"

#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/framereceiver.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/recordscale.h"
#include "apps/korvectl/spectrumpicture.h"
#include "apps/korvectl/units.h"
#include "apps/korvectl/writewhole.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <array>

#include <unistd.h>

namespace korvectl
{

namespace
{

using KorveDataTypes::eFFT_Window;

constexpr std::array windowNames{"rectangle", "hamming", "hanning", "kaiser", "blackman"}; // in the order of the type

eFFT_Window windowNamed(const QString &name)
{
    const auto found = std::find(windowNames.begin(), windowNames.end(), name);
    return static_cast<eFFT_Window>(found - windowNames.begin());
}

enum class Form { Picture, Numbers, Blocks };

Form formOf(const CommandLine &line)
{
    if (!line.spectrum.picture.isEmpty())
        return Form::Picture;
    return line.json ? Form::Numbers : Form::Blocks;
}

TerminalSize terminal()
{
    return terminalSize(STDOUT_FILENO);
}

unsigned linesFor(const CommandLine &line)
{
    constexpr unsigned usualHeight = 512;
    if (line.spectrum.lineCount > 0)
        return static_cast<unsigned>(line.spectrum.lineCount);
    if (formOf(line) != Form::Blocks)
        return usualHeight;
    const auto rows = static_cast<unsigned>(std::max(8, terminal().rows - 4)); // what is written above, and the prompt
    return hasColours() ? 2 * rows : rows;
}

/// How many columns are kept of a line: transforms may be much longer than what can be shown, or held in memory.
int columnsFor(const CommandLine &line)
{
    constexpr quint64 widest = 4096;
    constexpr quint64 mostPoints = 1 << 25;
    constexpr quint64 mostNumbers = 1 << 23;
    if (formOf(line) == Form::Blocks)
        return terminal().columns;
    if (formOf(line) == Form::Picture)
        return static_cast<int>(std::min(widest, mostPoints / linesFor(line)));
    if (line.spectrum.fftSize > mostNumbers / linesFor(line))
        throw Failure(ExitCode::Usage, QStringLiteral("%1 lines of %2 samples are too much for JSON; ask for less.")
                                           .arg(linesFor(line))
                                           .arg(line.spectrum.fftSize));
    return FrameReceiver::allColumns;
}

Spectrum fetch(const CommandLine &line)
{
    const int columns = columnsFor(line);
    AdminSession admin(line);
    const ByteRange range = RecordScale(admin.record()).rangesOf(line.sections).first();
    FrameReceiver receiver;
    admin.ask(Flow::Admin, QStringLiteral("asking for the spectrum of %1").arg(admin.recordWords()),
              [&](AdminSession::Handler &handler) {
                  return handler.overviewSpectrumStreamed(
                      line.device, line.record, static_cast<long long>(range.begin), static_cast<long long>(range.end),
                      linesFor(line), line.spectrum.fftSize, windowNamed(line.spectrum.window), receiver.host(),
                      receiver.port());
              });
    return receiver.receive(line.timeout, columns);
}

QString megahertz(double hertz)
{
    return QStringLiteral("%1 MHz").arg(hertz / 1e6, 0, 'f', 6);
}

QString description(const Spectrum &spectrum, const SpectrumPicture &picture)
{
    return QStringLiteral("%1 to %2 from left to right, %3 to %4 dBFS from dark to bright\n%5 to %6 from top to bottom\n")
        .arg(megahertz(spectrum.lowestFrequency()), megahertz(spectrum.highestFrequency()),
             QString::number(static_cast<double>(picture.floorLevel()), 'f', 1),
             QString::number(static_cast<double>(picture.ceilingLevel()), 'f', 1),
             units::exactInstant(spectrum.lines.first().timestampUs), // there is one at least
             units::exactInstant(spectrum.lines.last().timestampUs));
}

QJsonObject headObject(const CommandLine &line, const Spectrum &spectrum)
{
    const apps::SpectrumHead &head = spectrum.head;
    return {{QStringLiteral("device"), line.device},
            {QStringLiteral("record"), line.record},
            {QStringLiteral("fftSize"), static_cast<qint64>(head.fftSize)},
            {QStringLiteral("values"), static_cast<qint64>(head.valuesPerLine)},
            {QStringLiteral("lowestFrequencyHz"), spectrum.lowestFrequency()},
            {QStringLiteral("highestFrequencyHz"), spectrum.highestFrequency()},
            {QStringLiteral("startBytes"), jsonNumber(head.startPosition)},
            {QStringLiteral("stopBytes"), jsonNumber(head.stopPosition)},
            {QStringLiteral("sampleRateHz"), jsonNumber(head.sampleRateHz)}};
}

QJsonArray linesArray(const Spectrum &spectrum)
{
    QJsonArray lines;
    for (const apps::SpectrumLine &line : spectrum.lines) {
        QJsonArray values;
        for (const float value : line.levels)
            values.append(static_cast<double>(value));
        lines.append(QJsonObject{{QStringLiteral("positionBytes"), jsonNumber(line.position)},
                                 {QStringLiteral("timeUs"), jsonTime(line.timestampUs)},
                                 {QStringLiteral("dBFS"), values}});
    }
    return lines;
}

[[noreturn]] void failToWrite(const QString &path, const QFileDevice &file)
{
    throw Failure(ExitCode::Failed, QStringLiteral("%1 cannot be written: %2.").arg(path, file.errorString()));
}

/// To something else than a file on a disk, such as a pipe.
void writeInPlace(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !writeWhole(file, bytes))
        failToWrite(path, file);
}

/// When it fails, what was there before is there still.
void writeOrLeave(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !writeWhole(file, bytes) || !file.commit())
        failToWrite(path, file);
}

void save(const QImage &image, const QString &path)
{
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    image.save(&bytes, "PNG");
    const QFileInfo found(path);
    if (found.exists() && !found.isFile())
        writeInPlace(path, bytes.data());
    else
        writeOrLeave(path, bytes.data());
}

void writePicture(const CommandLine &line, const Spectrum &spectrum)
{
    const SpectrumPicture picture(spectrum.lines);
    const QImage &image = picture.image();
    save(image, line.spectrum.picture);
    QJsonObject object = headObject(line, spectrum);
    object.insert(QStringLiteral("picture"), line.spectrum.picture);
    const QString size = QStringLiteral("%1 x %2 points").arg(image.width()).arg(image.height());
    print(line.json ? jsonText(object)
                    : QStringLiteral("%1: %2\n").arg(line.spectrum.picture, size) + description(spectrum, picture));
}

void writeNumbers(const CommandLine &line, const Spectrum &spectrum)
{
    QJsonObject object = headObject(line, spectrum);
    object.insert(QStringLiteral("lines"), linesArray(spectrum));
    print(jsonText(object));
}

void writeBlocks(const Spectrum &spectrum)
{
    const SpectrumPicture picture(spectrum.lines, terminal().columns);
    print(description(spectrum, picture) +
          (hasColours() ? colouredBlocks(picture.image()) : shadedBlocks(picture.image())));
}

} // namespace

ExitCode showSpectrum(const CommandLine &line)
{
    const Spectrum spectrum = fetch(line);
    switch (formOf(line)) {
    case Form::Picture:
        writePicture(line, spectrum);
        break;
    case Form::Numbers:
        writeNumbers(line, spectrum);
        break;
    case Form::Blocks:
        writeBlocks(spectrum);
        break;
    }
    return ExitCode::Success;
}

} // namespace korvectl

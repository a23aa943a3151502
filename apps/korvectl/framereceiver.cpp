#include "apps/korvectl/framereceiver.h"

#include "apps/korvectl/failure.h"
#include "apps/korvectl/spectrumpicture.h"

#include <QTcpSocket>

namespace korvectl
{

namespace
{

apps::SpectrumLine narrowed(apps::SpectrumLine line, int columns)
{
    if (columns == FrameReceiver::allColumns || line.levels.size() <= columns)
        return line;
    QVector<float> kept(columns);
    for (int column = 0; column < columns; ++column)
        kept[column] = loudestOf(line.levels, column, columns);
    line.levels = kept;
    return line;
}

} // namespace

FrameReceiver::FrameReceiver()
{
    if (!server.listen(address.listening))
        throw Failure(ExitCode::Failed,
                      QStringLiteral("Nothing can be received here: %1.").arg(server.errorString()));
}

Spectrum FrameReceiver::receive(std::chrono::milliseconds patience, int columns)
{
    const int patienceMs = static_cast<int>(patience.count());
    if (!server.waitForNewConnection(patienceMs))
        throw Failure(ExitCode::NotReachable, QStringLiteral("The device did not connect to %1:%2.")
                                                  .arg(host(), QString::number(port())));
    QTcpSocket *const socket = server.nextPendingConnection(); // the server's
    apps::SpectrumReader reader;
    Spectrum spectrum;
    try {
        while (!reader.isComplete()) {
            if (socket->bytesAvailable() == 0 && !socket->waitForReadyRead(patienceMs))
                reader.requireComplete();
            reader.add(socket->readAll());
            while (const auto line = reader.next())
                spectrum.lines << narrowed(*line, columns);
        }
    } catch (const apps::SpectrumError &error) {
        throw Failure(ExitCode::Failed, QStringLiteral("The spectrum did not come whole: %1 (%2).")
                                            .arg(error.text(), socket->errorString()));
    }
    spectrum.head = *reader.head();
    return spectrum;
}

double Spectrum::lowestFrequency() const
{
    const double step = static_cast<double>(head.sampleRateHz) / head.fftSize;
    return head.isComplex() ? static_cast<double>(head.tunerFrequencyHz) - head.fftSize / 2 * step : 0;
}

double Spectrum::highestFrequency() const
{
    return lowestFrequency() + static_cast<double>(head.sampleRateHz) / head.fftSize * (head.valuesPerLine - 1);
}

} // namespace korvectl

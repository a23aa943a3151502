#include "installation/recorder/spectrumsender.h"

#include "installation/recorder/addresstext.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr quint64 stepBytes = 256 << 10;

void requirePlace(quint32 address, quint16 port)
{
    if (address == 0 || port == 0)
        throw RecorderError(TQ_KORVE::ekINVALID_VALUE,
                            QStringLiteral("nobody can listen at %1:%2").arg(addressText(address)).arg(port));
}

/// Of a spectrum that goes on as bytes; several lines at a time where they are short.
template <typename Take> void pass(OverviewSpectrum &spectrum, Take take)
{
    take(spectrum.head());
    const quint64 step = std::max<quint64>(stepBytes / spectrum.lineBytes(), 1);
    for (quint64 line = 0; line < spectrum.lineCount(); line += step)
        take(spectrum.lines(line, step));
}

} // namespace

SpectrumSender::SpectrumSender(std::shared_ptr<StoreThread> store, const OutgoingConnection::Timing &timing)
    : store(std::move(store)), timing(timing), jobs(QStringLiteral("spectra"), maximumSpectra)
{
}

std::unique_ptr<OverviewSpectrum> SpectrumSender::open(const QString &recordId, const SpectrumRequest &request) const
{
    const auto [record, path] = store->ask([recordId](RecordStore &records) {
        return std::pair(records.recordInOrder(recordId), records.samplesPath(recordId));
    });
    return std::make_unique<OverviewSpectrum>(record, path, request);
}

QByteArray SpectrumSender::overview(const QString &recordId, const SpectrumRequest &request)
{
    const Jobs::Place place = jobs.takePlace();
    const auto spectrum = open(recordId, request);
    const quint64 bytes = spectrum->lineCount() * spectrum->lineBytes();
    if (bytes > maximumBytes)
        throw RecorderError(TQ_KORVE::ekINVALID_VALUE,
                            QStringLiteral("%1 bytes of spectrum, more than %2, have to be streamed")
                                .arg(QString::number(bytes), QString::number(maximumBytes)));
    QByteArray whole;
    pass(*spectrum, [&](const QByteArray &step) { whole += step; });
    return whole;
}

void SpectrumSender::stream(const QString &recordId, const SpectrumRequest &request, quint32 address, quint16 port)
{
    requirePlace(address, port);
    Jobs::Place place = jobs.takePlace();
    const std::shared_ptr<OverviewSpectrum> spectrum = open(recordId, request);
    const auto connection = std::make_shared<OutgoingConnection>(addressText(address), port, jobs.stopToken(), timing);
    jobs.start(std::move(place), [spectrum, connection](const std::stop_token &) {
        pass(*spectrum, [&](const QByteArray &step) { connection->send(step.constData(), step.size()); });
        connection->finish();
    });
}

} // namespace installation::recorder

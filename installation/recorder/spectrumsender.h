#pragma once

#include "installation/recorder/jobs.h"
#include "installation/recorder/outgoingconnection.h"
#include "installation/recorder/overviewspectrum.h"

#include <memory>

namespace installation::recorder
{

class StoreThread;

/// Answers with overview spectra, or sends them to who listens for them. At most maximumSpectra go on at once.
///
/// Thread: any.  Errors: throws RecorderError; what goes wrong after the connection stands is traced, and the receiver
/// sees an end before the last line.
class SpectrumSender
{
public:
    static constexpr unsigned maximumSpectra = 4;
    /// The greatest answer in one piece.
    static constexpr quint64 maximumBytes = 16 << 20;

    explicit SpectrumSender(std::shared_ptr<StoreThread> store, const OutgoingConnection::Timing &timing = {});

    /// The whole spectrum; blocks.
    QByteArray overview(const QString &recordId, const SpectrumRequest &request);
    /// Connects to @p port of the IPv4 address @p address, and sends the spectrum on a thread of its own.
    void stream(const QString &recordId, const SpectrumRequest &request, quint32 address, quint16 port);
    /// See Jobs.
    void cancel() { jobs.cancel(); }
    /// Ends what is being sent, and waits until it has.
    void stop() { jobs.stop(); }

private:
    std::unique_ptr<OverviewSpectrum> open(const QString &recordId, const SpectrumRequest &request) const;

    const std::shared_ptr<StoreThread> store;
    const OutgoingConnection::Timing timing;
    Jobs jobs;
};

} // namespace installation::recorder

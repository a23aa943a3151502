#pragma once

#include "apps/korvectl/ownaddress.h"
#include "apps/spectrum/spectrumreader.h"

#include <QTcpServer>

#include <chrono>

namespace korvectl
{

/// A whole overview spectrum.
struct Spectrum {
    apps::SpectrumHead head; ///< as the device has told it
    QVector<apps::SpectrumLine> lines;

    /// In Hz, of the first value and of the last.
    double lowestFrequency() const;
    double highestFrequency() const;
};

/// A socket of this program's own to which a device sends one overview spectrum.
///
/// Thread: main; blocks.  Errors: throws Failure.
class FrameReceiver
{
public:
    /// Listens where the references of this program lead, too.
    FrameReceiver();

    const QString &host() const { return address.reachable; }
    quint16 port() const { return server.serverPort(); }
    static constexpr int allColumns = 0;
    /// Waits for the device, and for each part of the spectrum, at most for @p patience. Of longer lines it keeps
    /// @p columns values: of those that share a column, the loudest.
    Spectrum receive(std::chrono::milliseconds patience, int columns = allColumns);

private:
    const OwnAddress address = OwnAddress::ofReferences();
    QTcpServer server;
};

} // namespace korvectl

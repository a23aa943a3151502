#pragma once

#include <QtGlobal>

#include <chrono>

namespace installation::recorder
{

/// When the bytes of a stream are due that is to go at a rate of its own, in pieces of about ten milliseconds.
///
/// What a receiver holds up for a second or more is not caught up with; the stream goes on at its rate from there.
class Pacer
{
public:
    using Clock = std::chrono::steady_clock;

    Pacer(double samplesPerSecond, unsigned sampleBytes, Clock::time_point start);

    /// The stream goes on from here.
    void restart(Clock::time_point now);
    /// How many bytes may go now; 0 before nextPiece().
    quint64 due(Clock::time_point now);
    void sent(quint64 bytes);
    /// When there is more than what was due by now.
    Clock::time_point nextPiece() const;

private:
    quint64 piecesBy(Clock::time_point now) const;

    const double pieceSeconds;
    const quint64 pieceBytes;
    Clock::time_point start;
    quint64 sentBytes = 0;
    quint64 releasedPieces = 0;
};

} // namespace installation::recorder

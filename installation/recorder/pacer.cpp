#include "installation/recorder/pacer.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr double pieceSecondsWanted = 0.01;
constexpr double longestLagSeconds = 1;

quint64 samplesOfAPiece(double samplesPerSecond)
{
    return std::max<quint64>(1, static_cast<quint64>(samplesPerSecond * pieceSecondsWanted));
}

} // namespace

Pacer::Pacer(double samplesPerSecond, unsigned sampleBytes, Clock::time_point start)
    : pieceSeconds(double(samplesOfAPiece(samplesPerSecond)) / samplesPerSecond),
      pieceBytes(samplesOfAPiece(samplesPerSecond) * sampleBytes), start(start)
{
}

void Pacer::restart(Clock::time_point now)
{
    start = now;
    sentBytes = 0;
    releasedPieces = 0;
}

quint64 Pacer::piecesBy(Clock::time_point now) const
{
    const double elapsed = std::chrono::duration<double>(now - start).count();
    return elapsed <= 0 ? 0 : static_cast<quint64>(elapsed / pieceSeconds);
}

quint64 Pacer::due(Clock::time_point now)
{
    const quint64 pieces = piecesBy(now);
    const quint64 waiting = pieces * pieceBytes - std::min(sentBytes, pieces * pieceBytes);
    if (double(waiting) * pieceSeconds > longestLagSeconds * double(pieceBytes) && waiting > pieceBytes) {
        restart(now - std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(pieceSeconds)));
        releasedPieces = 1;
        return pieceBytes;
    }
    releasedPieces = std::max(releasedPieces, pieces);
    return releasedPieces * pieceBytes - std::min(sentBytes, releasedPieces * pieceBytes);
}

void Pacer::sent(quint64 bytes)
{
    sentBytes += bytes;
}

Pacer::Clock::time_point Pacer::nextPiece() const
{
    const std::chrono::duration<double> until(double(releasedPieces + 1) * pieceSeconds);
    return start + std::chrono::duration_cast<Clock::duration>(until) + std::chrono::nanoseconds(1);
}

} // namespace installation::recorder

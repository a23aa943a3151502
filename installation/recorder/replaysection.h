#pragma once

#include <QtGlobal>

#include <optional>

namespace installation::recorder
{

/// Which part of a record is played, how often, and how far that is. Positions are bytes from the first sample on.
///
/// A sample that has begun to go is completed whatever happens, so that the receiver never gets half of one.
/// Errors: RecorderError with `ekINVALID_VALUE` for what is no place of the record, or none between two samples.
class ReplaySection
{
public:
    ReplaySection(quint64 sizeBytes, unsigned sampleBytes)
        : sizeBytes(sizeBytes), sampleBytes(sampleBytes), endPosition(sizeBytes)
    {
    }

    /// What lies before it is not played; a position before it moves there.
    void setBegin(quint64 begin);
    /// The first byte that is not played any more.
    void setEnd(quint64 end);
    void setPosition(quint64 position);
    /// How often it is played, 0 for without end. Passes that are done count.
    void setPasses(quint32 passes) { wantedPasses = passes; }

    quint64 begin() const { return beginPosition; }
    quint64 end() const { return endPosition; }
    /// The next byte that goes.
    quint64 position() const { return current; }
    /// Where the next whole sample is taken from.
    quint64 samplePosition() const;
    /// Bytes that go before anything else is to be asked; 0 at the end of a pass.
    quint64 left() const;
    /// Bytes from position() on are under way; until advance() tells how many, the position stays.
    void depart() { underWay = true; }
    void advance(quint64 bytes);
    /// The receiver has gone with what it got of a sample: that goes whole to the next one.
    void dropBegun();
    bool isUnderWay() const { return underWay; }
    /// Goes to the begin for another pass; false when that was the last.
    bool beginNextPass();

private:
    void requirePlace(quint64 position) const;
    void jump(quint64 position);

    const quint64 sizeBytes;
    const unsigned sampleBytes;
    quint64 beginPosition = 0;
    quint64 endPosition;
    quint64 current = 0;
    std::optional<quint64> target; ///< where to go when the sample is complete
    bool underWay = false;
    quint32 wantedPasses = 1;
    quint32 donePasses = 0;
};

} // namespace installation::recorder

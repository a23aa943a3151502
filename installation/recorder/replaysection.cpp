#include "installation/recorder/replaysection.h"

#include "installation/recorder/recordererror.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{

RecorderError invalid(const QString &text)
{
    return {TQ_KORVE::ekINVALID_VALUE, text};
}

} // namespace

void ReplaySection::requirePlace(quint64 position) const
{
    if (position > sizeBytes)
        throw invalid(QStringLiteral("position %1 is behind the end at %2").arg(position).arg(sizeBytes));
    if (position % sampleBytes != 0)
        throw invalid(QStringLiteral("position %1 is within a sample of %2 bytes").arg(position).arg(sampleBytes));
}

void ReplaySection::setBegin(quint64 begin)
{
    requirePlace(begin);
    if (begin >= endPosition)
        throw invalid(QStringLiteral("the begin %1 is not before the end %2").arg(begin).arg(endPosition));
    beginPosition = begin;
    if (samplePosition() < begin)
        jump(begin);
}

void ReplaySection::setEnd(quint64 end)
{
    requirePlace(end);
    if (end <= beginPosition)
        throw invalid(QStringLiteral("the end %1 is not behind the begin %2").arg(end).arg(beginPosition));
    endPosition = end;
}

void ReplaySection::setPosition(quint64 position)
{
    requirePlace(position);
    if (position < beginPosition || position >= endPosition)
        throw invalid(QStringLiteral("position %1 is not from %2 to %3").arg(position).arg(beginPosition).arg(endPosition));
    jump(position);
}

void ReplaySection::jump(quint64 position)
{
    if (!underWay && current % sampleBytes == 0)
        current = position;
    else
        target = position;
}

quint64 ReplaySection::samplePosition() const
{
    return target.value_or((current + sampleBytes - 1) / sampleBytes * sampleBytes);
}

quint64 ReplaySection::left() const
{
    const quint64 begun = current % sampleBytes;
    if (begun != 0 && (target || current >= endPosition))
        return sampleBytes - begun;
    return current < endPosition ? endPosition - current : 0;
}

void ReplaySection::advance(quint64 bytes)
{
    underWay = false;
    current += bytes;
    if (target && current % sampleBytes == 0) {
        current = *target;
        target.reset();
    }
}

void ReplaySection::dropBegun()
{
    current = target.value_or(std::max(current - current % sampleBytes, beginPosition));
    target.reset();
}

bool ReplaySection::beginNextPass()
{
    ++donePasses;
    if (wantedPasses != 0 && donePasses >= wantedPasses)
        return false;
    current = beginPosition;
    return true;
}

} // namespace installation::recorder

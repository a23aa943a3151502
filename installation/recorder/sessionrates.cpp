#include "installation/recorder/sessionrates.h"

#include "korvebase/corbatodeviceconverter.h"

#include <algorithm>
#include <map>

namespace installation::recorder
{

namespace
{

constexpr CORBA::ULong classCount = TQ_KORVE::drVUHF_1M + 1;

CORBA::ULong freeSessions(const SessionTable &sessions, SessionKind kind)
{
    return static_cast<CORBA::ULong>(SessionTable::maximumOfAKind -
                                     std::min(SessionTable::maximumOfAKind, sessions.count(kind)));
}

} // namespace

TQ_KORVE::seqDataRateClasses *availableRates(const SessionTable &sessions)
{
    const TQ_KORVE::struSessionLimits limits{freeSessions(sessions, SessionKind::Recording),
                                             freeSessions(sessions, SessionKind::Replay)};
    auto classes = std::make_unique<TQ_KORVE::seqDataRateClasses>();
    classes->length(classCount);
    for (CORBA::ULong rate = 0; rate < classCount; ++rate)
        (*classes)[rate] = {rate, limits};
    return classes.release();
}

TQ_KORVE::seqOccupiedDataRateClasses *occupiedRates(const SessionTable &sessions)
{
    std::map<CORBA::ULong, CORBA::ULong> counts;
    const QHash<DataRate, int> occupation = sessions.occupation();
    for (auto rate = occupation.cbegin(); rate != occupation.cend(); ++rate)
        counts[static_cast<CORBA::ULong>(KorveCommon::CorbaToDeviceConverter::convertDataRateFromXml(rate.key()))] +=
            static_cast<CORBA::ULong>(rate.value());
    auto classes = std::make_unique<TQ_KORVE::seqOccupiedDataRateClasses>();
    classes->length(static_cast<CORBA::ULong>(counts.size()));
    CORBA::ULong number = 0;
    for (const auto &[rate, count] : counts)
        (*classes)[number++] = {rate, count};
    return classes.release();
}

} // namespace installation::recorder

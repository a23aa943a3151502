#include "installation/recorder/samplelayout.h"

#include "installation/recorder/jsonmembers.h"
#include "installation/recorder/recordererror.h"

#include <cmath>

namespace installation::recorder
{

namespace
{

SampleFormat sampleFormat(const JsonMembers &global, TQ_KORVE::eKorveKind refusal)
{
    const QString datatype = global.text(QStringLiteral("core:datatype"));
    if (const std::optional<SampleFormat> format = SampleFormat::ofSigmf(datatype))
        return *format;
    throw RecorderError(refusal, QStringLiteral("\"core:datatype\" is \"%1\", which is not known").arg(datatype));
}

unsigned channelCount(const JsonMembers &global, TQ_KORVE::eKorveKind refusal)
{
    const QString key = QStringLiteral("core:num_channels");
    const double count = global.has(key) ? global.number(key) : 1;
    if (!(count >= 1 && count <= 65535) || count != std::floor(count))
        throw RecorderError(refusal, QStringLiteral("\"core:num_channels\" is %1").arg(count));
    return static_cast<unsigned>(count);
}

} // namespace

SampleLayout sampleLayout(const JsonMembers &global, TQ_KORVE::eKorveKind refusal)
{
    return {sampleFormat(global, refusal), channelCount(global, refusal)};
}

SampleLayout sampleLayout(const Record &record)
{
    const JsonMembers sigmf(record.sigmf);
    return sampleLayout(JsonMembers(sigmf.members(QStringLiteral("global"))), TQ_KORVE::ekRECORD_CORRUPTED);
}

} // namespace installation::recorder

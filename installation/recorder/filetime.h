#pragma once

#include <QString>

#include <optional>

namespace installation::recorder
{

// Points in time are microseconds since 1970, UTC.

quint64 modificationTimeUs(const QString &path);
/// As `core:datetime` of SigMF, with all microseconds.
QString toSigmfTime(quint64 timeUs);
/// None for what is no such time, or one before 1970. Digits beyond microseconds are dropped.
std::optional<quint64> fromSigmfTime(const QString &text);
/// What is the matter with @p text where that gives none, as the end of a sentence: "which ...".
QString whyNoSigmfTime(const QString &text);

} // namespace installation::recorder

#pragma once

#include "installation/recorder/recordparts.h"

namespace installation::recorder
{

class PositionTimes;

/// The SigMF document @p sigmf for a record that has only the sections @p parts of the samples.
///
/// Captures and annotations move with their samples, annotations are cut at the ends of a section; each section begins
/// with a capture. The checksum is dropped.
QJsonObject sigmfOfParts(const QJsonObject &sigmf, const QVector<FilePart> &parts, const PositionTimes &times);

} // namespace installation::recorder

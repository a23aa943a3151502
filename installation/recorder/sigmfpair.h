#pragma once

#include "installation/recorder/importsource.h"

namespace installation::recorder
{

/// Whether a file is one of a SigMF pair, by its name.
bool isSigmfName(const QString &path);
/// Looks at a SigMF pair by the name of either of its files. A record of ours keeps its name, bookmarks and history.
/// @throws RecorderError with the reason for which it is refused.
ImportSource inspectSigmf(const QString &path);

} // namespace installation::recorder

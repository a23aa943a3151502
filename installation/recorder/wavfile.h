#pragma once

#include "installation/recorder/importsource.h"

namespace installation::recorder
{

/// Looks at a WAV file (RIFF or RF64). It is taken as sound, begun at the file's time.
/// @throws RecorderError with the reason for which it is refused.
ImportSource inspectWav(const QString &path);

} // namespace installation::recorder

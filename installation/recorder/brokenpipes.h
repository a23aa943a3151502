#pragma once

namespace installation::recorder
{

/// A receiver that goes does not end the process by a signal when this thread sends to it; sendfile() has no flag for that.
void blockBrokenPipes();

} // namespace installation::recorder

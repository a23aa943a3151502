#pragma once

#include <QString>

namespace installation::recorder
{

/// An IPv4 address of the contracts, such as 0x7f000001, as text.
QString addressText(quint32 address);

} // namespace installation::recorder

#pragma once

#include <QtGlobal>

namespace installation::recorder
{

/// Turns each number of @p wordBytes among the @p size bytes around, its last byte first. Single bytes have no order.
void swapWords(char *bytes, quint64 size, unsigned wordBytes);

} // namespace installation::recorder

#include "valuetreelib/valuenumeric.h"

namespace values
{
template class ValueNumeric<int>;
template class ValueNumeric<qint64>;
template class ValueNumeric<double>;
} // namespace values

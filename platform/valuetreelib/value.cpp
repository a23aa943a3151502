#include "valuetreelib/value.h"

namespace values
{
template class Value<QString>;
template class Value<bool>;
template class Value<int>;
template class Value<unsigned int>;
template class Value<qint64>;
template class Value<double>;
} // namespace values

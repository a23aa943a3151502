#include "installation/recorder/wordorder.h"

#include <QtEndian>

namespace installation::recorder
{

void swapWords(char *bytes, quint64 size, unsigned wordBytes)
{
    const auto count = static_cast<qsizetype>(size / wordBytes);
    switch (wordBytes) {
    case 2:
        return void(qbswap<2>(bytes, count, bytes));
    case 4:
        return void(qbswap<4>(bytes, count, bytes));
    case 8:
        return void(qbswap<8>(bytes, count, bytes));
    default:
        return;
    }
}

} // namespace installation::recorder

#include "installation/recorder/addresstext.h"

namespace installation::recorder
{

QString addressText(quint32 address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address >> 24)
        .arg(address >> 16 & 0xff)
        .arg(address >> 8 & 0xff)
        .arg(address & 0xff);
}

} // namespace installation::recorder

#include "installation/manager/receiveraddress.h"

#include <arpa/inet.h>

namespace installation
{

std::optional<ReceiverAddress> ReceiverAddress::from(const QString &text)
{
    const int colon = text.lastIndexOf(u':');
    bool isNumber = false;
    const quint16 port = text.mid(colon + 1).toUShort(&isNumber);
    in_addr address{};
    const QByteArray host = text.left(colon).toLatin1();
    if (colon < 0 || !isNumber || port == 0 || ::inet_pton(AF_INET, host.constData(), &address) != 1 ||
        address.s_addr == 0)
        return {};
    return ReceiverAddress{ntohl(address.s_addr), port};
}

} // namespace installation

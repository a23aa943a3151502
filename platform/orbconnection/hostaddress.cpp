#include "orbconnection/hostaddress.h"

#include <QString>

#include <memory>

#include <netdb.h>
#include <sys/socket.h>

namespace
{
QString literal(const addrinfo &found)
{
    char text[NI_MAXHOST];
    const int error = getnameinfo(found.ai_addr, found.ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST);
    return error == 0 ? QString::fromLatin1(text) : QString();
}
} // namespace

bool firstAddressOfHost(const QString &hostName, QString &address, bool preferIPv4)
{
    if (hostName.trimmed().isEmpty()) // the resolver would yield this host itself
        return false;
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(hostName.trimmed().toUtf8().constData(), nullptr, &hints, &found) != 0)
        return false;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, freeaddrinfo);
    const addrinfo *chosen = found;
    if (preferIPv4) {
        const addrinfo *candidate = found;
        while (candidate && candidate->ai_family != AF_INET)
            candidate = candidate->ai_next;
        chosen = candidate ? candidate : found;
    }
    const QString text = literal(*chosen);
    if (text.isEmpty())
        return false;
    address = text;
    return true;
}

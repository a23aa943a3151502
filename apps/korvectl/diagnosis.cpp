#include "apps/korvectl/diagnosis.h"

#include "coresupport/ulmaos.h"

#include <cerrno>

namespace korvectl
{

namespace
{

int connectionError(const QString &address)
{
    const int colon = address.lastIndexOf(u':');
    QString host = address.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    const UlmaOS::ProbeReply reply =
        UlmaOS::GetInstance().probe(host.toLatin1().constData(), address.mid(colon + 1).toUShort(), 0);
    return reply.reachable != 0 ? 0 : reply.errorNumber;
}

void say(Link &link, const QString &howLong, const char *finding, const char *remedy)
{
    link.complaint = QStringLiteral("The %1 at %2 did not answer %3: %4.")
                         .arg(link.name, link.address, howLong, QString::fromUtf8(finding));
    link.remedy = QString::fromUtf8(remedy);
}

} // namespace

void diagnoseSilence(Link &link, const QString &howLong)
{
    switch (connectionError(link.address)) {
    case 0:
        return say(link, howLong, "something listens there, but does not answer as it should",
                   "Look into its log, and start it again; another program may also have taken its port.");
    case ECONNREFUSED:
        return say(link, howLong, "nothing listens there",
                   "Start it there (all services of this host: ./korve up), or check that KORVE_CCO names the central "
                   "object service that is meant.");
    case EHOSTUNREACH:
    case ENETUNREACH:
        return say(link, howLong, "there is no such host, or no way to it",
                   "Check the name or address (KORVE_CCO, [host] publish=), and the network in between.");
    default:
        return say(link, howLong, "the host is silent",
                   "Check that the host is up and that no firewall keeps this port closed.");
    }
}

} // namespace korvectl

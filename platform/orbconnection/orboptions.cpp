#include "orbconnection/orboptions.h"

namespace CorbaCommon
{
namespace
{
// The ORB's own limit of 2 MiB ends a list at a few thousand records, and says nothing of sizes then.
constexpr int maximumMessageBytes = 512 * 1024 * 1024;
// Each mirrored subtree keeps two calls pending; calls beyond this number wait for one another.
constexpr int connectionsPerServer = 256;

QString endpoint(const QString &address, const QString &port)
{
    const bool needsBrackets = address.contains(u':') && !address.startsWith(u'[');
    const QString host = needsBrackets ? u'[' + address + u']' : address;
    return QStringLiteral("giop:tcp:%1:%2").arg(host, port);
}

QString milliseconds(std::chrono::milliseconds duration)
{
    return QString::number(duration.count());
}

} // namespace

OrbOptions::OrbOptions(const OrbSettings &settings, const QStringList &programArguments)
{
    addArguments(programArguments);
    add("giopMaxMsgSize", QString::number(maximumMessageBytes));
    add("maxGIOPConnectionPerServer", QString::number(connectionsPerServer));
    add("clientCallTimeOutPeriod", milliseconds(settings.callTimeout));
    add("clientConnectTimeOutPeriod", milliseconds(settings.connectLimit()));
    add("throwTransientOnTimeOut", QStringLiteral("1"));
    add("traceTime", QStringLiteral("0")); // the ORB's own messages: it makes local time in many threads at once
    addEndpoints(settings);
    addCentralService(settings.centralService);
    options.push_back({nullptr, nullptr});
}

void OrbOptions::add(const char *name, const QString &value)
{
    texts.push_back(value.toStdString());
    options.push_back({name, texts.back().c_str()});
}

void OrbOptions::addEndpoints(const OrbSettings &settings)
{
    QStringList ports;
    for (const unsigned short port : settings.ports)
        ports << QString::number(port);
    if (ports.isEmpty())
        ports << QString();
    for (const QString &port : std::as_const(ports)) {
        add("endPoint", endpoint(settings.address, port));
        if (settings.published() != settings.address)
            add("endPointPublish", endpoint(settings.published(), port));
    }
}

void OrbOptions::addCentralService(const QString &hostAndPort)
{
    if (namesCentralService)
        return; // the program's arguments say so
    const QString reference = centralServiceReference(hostAndPort);
    namesCentralService = !reference.isEmpty();
    if (namesCentralService)
        add("InitRef", QStringLiteral("CCO=") + reference);
}

void OrbOptions::addArguments(const QStringList &programArguments)
{
    // The first is the program's name; an option of the ORB has a value behind it.
    for (int i = 1; i < programArguments.size(); ++i) {
        if (!programArguments[i].startsWith(QLatin1String("-ORB")))
            continue;
        texts.push_back(programArguments[i].toStdString());
        if (i + 1 < programArguments.size())
            texts.push_back(programArguments[++i].toStdString());
        namesCentralService |= texts.back().starts_with("CCO=");
    }
    if (texts.empty())
        return;
    texts.push_front("program"); // where ORB_init expects the program's name
    for (std::string &text : texts)
        argumentList.push_back(text.data());
    count = static_cast<int>(argumentList.size());
    argumentList.push_back(nullptr);
}
} // namespace CorbaCommon

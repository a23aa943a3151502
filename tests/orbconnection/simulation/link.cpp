#include "tests/orbconnection/simulation/link.h"

#include "tests/orbconnection/joinedmirror.h"
#include "valuetreelib/node.h"

using namespace values;
using mirror::MirrorClient;
using mirror::MirrorSession;

namespace simulation
{
namespace
{
/// All of a value that is mirrored.
std::string wordOf(const ValueBase &value)
{
    std::string frames = value.GetTypeName().toStdString() + ' ';
    value.AddObjectStateStringForTransmission(frames);
    return frames;
}

std::string textOf(const ValueBase &value)
{
    return (value.GetTypeName() + u' ' + value.GetStringValue() + u' ' + QString::number(value.GetState())).toStdString();
}
} // namespace

Link::Link(Side &server, Side &client, const MirrorTiming &timing)
    : server(server), client(client), timing(timing),
      mirrorClient(client.tree, client.top, QString(), timing, JoinedMirror::outletTo(toServer))
{
}

void Link::connect()
{
    disconnect();
    session = std::make_unique<MirrorSession>(server.tree, server.top, timing, JoinedMirror::outletTo(toClient));
    mirrorClient.begin();
}

void Link::disconnect()
{
    session.reset();
    mirrorClient.lose();
    toClient.clear();
    toServer.clear();
    lastToClient.clear();
    lastToServer.clear();
    lostToClient = lostToServer = false;
}

void Link::act(Random &random)
{
    if (!session)
        return random.happens(20) ? connect() : void();
    const int what = random.below(1000);
    if (what < 200)
        flushServer();
    else if (what < 400)
        flushClient();
    else if (what < 680)
        deliverToClient();
    else if (what < 940)
        deliverToServer();
    else if (what < 960 && !lastToClient.empty())
        mirrorClient.receive(lastToClient); // again
    else if (what < 975 && !lastToServer.empty())
        session->receive(lastToServer); // again
    else if (what < 985)
        lostToClient = loseOne(toClient, random) || lostToClient;
    else if (what < 988)
        lostToServer = loseOne(toServer, random) || lostToServer;
    else if (what < 994)
        resynchronise();
    else if (what < 997)
        connect();
    else
        disconnect();
}

bool Link::settle()
{
    // The carrier notices when the last one does not arrive.
    if (!session || std::exchange(lostToServer, false))
        connect();
    else if (std::exchange(lostToClient, false))
        resynchronise();
    flushServer();
    flushClient();
    if (toClient.empty() && toServer.empty())
        return false;
    while (session && !toClient.empty())
        deliverToClient();
    while (session && !toServer.empty())
        deliverToServer();
    return true;
}

void Link::flushServer()
{
    session->flush();
}

void Link::flushClient()
{
    mirrorClient.flush();
    client.endSeeding();
}

void Link::deliverToClient()
{
    if (toClient.empty())
        return;
    lastToClient = toClient.front();
    toClient.pop_front();
    note(lastToClient);
    const MirrorClient::Outcome outcome = mirrorClient.receive(lastToClient);
    if (outcome == MirrorClient::Outcome::Malformed)
        throw std::logic_error("the client refuses a batch of an honest server");
    if (outcome != MirrorClient::Outcome::Missing)
        return;
    if (!lostToClient)
        throw std::logic_error("the client misses a batch that the server has never sent");
    resynchronise();
}

void Link::deliverToServer()
{
    if (toServer.empty())
        return;
    lastToServer = toServer.front();
    toServer.pop_front();
    note(lastToServer);
    if (session->receive(lastToServer))
        return;
    if (!lostToServer)
        throw std::logic_error("the server refuses a batch of an honest client");
    connect();
}

bool Link::loseOne(std::deque<std::string> &batches, Random &random)
{
    if (batches.empty())
        return false;
    batches.erase(batches.begin() + random.below(static_cast<int>(batches.size())));
    return true;
}

void Link::resynchronise()
{
    session->startOver();
    toClient.clear();
    lostToClient = false;
}

void Link::note(const std::string &batch)
{
    seen = seen * 31 + std::hash<std::string>()(batch);
}

QString Link::atClient(const QString &serverPath) const
{
    return client.top + serverPath.mid(server.top.size());
}

QString Link::atServer(const QString &clientPath) const
{
    return server.top + clientPath.mid(client.top.size());
}

std::string Link::difference() const
{
    const std::string ofValues = differenceOfValues();
    return ofValues.empty() ? differenceOfNodes() : ofValues;
}

std::string Link::differenceOfValues() const
{
    for (TreeItem *const item : server.tree.subtree(server.top)) {
        if (item->isNode())
            continue;
        const auto &value = static_cast<const ValueBase &>(*item);
        const ValueBase *const mirrored = client.tree.findValue(atClient(item->GetPathName()));
        if (!mirrored)
            return item->GetPathName().toStdString() + " is missing at the client";
        if (wordOf(value) != wordOf(*mirrored))
            return item->GetPathName().toStdString() + " is " + textOf(value) + ", and at the client " + textOf(*mirrored);
    }
    for (TreeItem *const item : client.tree.subtree(client.top)) {
        const QString path = item->GetPathName();
        if (!item->isNode() && !server.tree.findValue(atServer(path)) && !client.isOwn(path))
            return path.toStdString() + " is at the client alone";
    }
    return {};
}

std::string Link::differenceOfNodes() const
{
    for (TreeItem *const item : server.tree.subtree(server.top))
        if (item->isNode() && !client.tree.findNode(atClient(item->GetPathName())))
            return item->GetPathName().toStdString() + ", a node, is missing at the client";
    for (TreeItem *const item : client.tree.subtree(client.top)) {
        const QString path = item->GetPathName();
        if (item->isNode() && path != client.top && !server.tree.findNode(atServer(path)) && !client.isOwnNode(path))
            return path.toStdString() + ", a node, is at the client alone";
    }
    return {};
}
} // namespace simulation

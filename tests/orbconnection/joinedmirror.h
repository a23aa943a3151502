#pragma once

#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorsession.h"
#include "tests/orbconnection/mirrorpair.h"

#include <deque>
#include <map>

/// One client and its side of the server, joined by a function that carries the batches.
class JoinedMirror : public MirrorPair
{
public:
    JoinedMirror(values::Tree &serverTree, values::Tree &clientTree, const QString &serverPath,
                 const QString &clientPath, const MirrorTiming &timing = {})
        : serverTree(serverTree), clientTree(clientTree), serverPath(serverPath), timing(timing),
          client(clientTree, clientPath, QStringLiteral("ReregisterCorba"), timing, outletTo(toServer))
    {
    }

    void connect() override
    {
        toClient.clear();
        toServer.clear();
        session = std::make_unique<mirror::MirrorSession>(serverTree, serverPath, timing, outletTo(toClient));
        client.begin();
        carry();
    }
    void disconnect() override
    {
        session.reset();
        client.lose();
    }
    /// Carries everything until both sides are quiet.
    void carry() override
    {
        do {
            carryToServer();
            carryToClient();
            session->flush();
            client.flush();
        } while (!toServer.empty() || !toClient.empty());
    }
    bool carryUntil(const std::function<bool()> &condition) override
    {
        carry();
        return condition();
    }
    bool isConnected() const override { return session && serverAccepts && client.isComplete(); }
    void carryToServer()
    {
        client.flush();
        for (; !toServer.empty(); toServer.pop_front())
            serverAccepts = session->receive(toServer.front()) && serverAccepts;
    }
    void carryToClient()
    {
        session->flush();
        for (; !toClient.empty(); toClient.pop_front())
            outcome = client.receive(toClient.front());
    }

    /// What waits is what has not been carried yet.
    static mirror::Outlet outletTo(std::deque<std::string> &batches)
    {
        return {.put = [&batches](quint64, std::string bytes) { batches.push_back(std::move(bytes)); },
                .waiting =
                    [&batches] {
                        std::size_t bytes = 0;
                        for (const std::string &batch : batches)
                            bytes += batch.size();
                        return bytes;
                    },
                .wantsFlush = [] {}};
    }

    values::Tree &serverTree;
    values::Tree &clientTree;
    const QString serverPath;
    MirrorTiming timing;
    std::deque<std::string> toClient;
    std::deque<std::string> toServer;
    std::unique_ptr<mirror::MirrorSession> session;
    mirror::MirrorClient client;
    mirror::MirrorClient::Outcome outcome{};
    bool serverAccepts = true;
};

/// Two trees, whose mirrors are joined by a function, so that a test can step in between.
class JoinedTrees : public TwoTrees
{
protected:
    /// By their relative paths: the class and the frames of values; of nodes only that they are there.
    using Items = std::map<std::string, std::string>;
    static Items itemsBelow(const values::Tree &tree, const QString &top)
    {
        Items items;
        for (const values::TreeItem *item : tree.subtree(top)) {
            const std::string path = item->GetPathName().mid(top.size()).toStdString();
            if (item->isNode()) {
                items[path + "/"] = "node";
                continue;
            }
            const auto *const value = static_cast<const values::ValueBase *>(item);
            items[path] = value->GetTypeName().toStdString() + ' ';
            value->AddObjectStateStringForTransmission(items[path]);
        }
        return items;
    }
    /// To be looked at when all is quiet.
    void expectEqualTrees() const
    {
        EXPECT_EQ(itemsBelow(clientTree, QStringLiteral("/Sub/A/Device")),
                  itemsBelow(serverTree, QStringLiteral("/K/Device")));
    }

    JoinedMirror pair{serverTree, clientTree, QStringLiteral("/K/Device"), QStringLiteral("/Sub/A/Device/")};
};

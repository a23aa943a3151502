#pragma once

#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorsession.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>

/// One client and its side of the server, joined by a function that carries the batches.
class JoinedMirror
{
public:
    JoinedMirror(values::Tree &serverTree, values::Tree &clientTree, const QString &serverPath,
                 const QString &clientPath)
        : serverTree(serverTree), clientTree(clientTree), serverPath(serverPath),
          client(clientTree, clientPath, QStringLiteral("ReregisterCorba"), timing,
                 [this](quint64, std::string bytes, bool) { toServer.push_back(std::move(bytes)); }, [] {})
    {
    }

    void connect()
    {
        toClient.clear();
        toServer.clear();
        session = std::make_unique<mirror::MirrorSession>(
            serverTree, serverPath, timing,
            [this](quint64, std::string bytes, bool) { toClient.push_back(std::move(bytes)); }, [] {});
        client.begin();
        session->sendSnapshot();
        carry();
    }
    void disconnect()
    {
        session.reset();
        client.lose();
    }
    /// Carries everything until both sides are quiet.
    void carry()
    {
        do {
            carryToServer();
            carryToClient();
            session->flush();
            client.flush();
        } while (!toServer.empty() || !toClient.empty());
    }
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

template <typename T>
T *addNew(values::Tree &tree, const QString &parent, const QString &name)
{
    auto value = std::make_unique<T>();
    value->SetName(name, nullptr);
    T *const borrowed = value.get();
    return tree.addValue(parent, std::move(value)) ? borrowed : nullptr;
}

using TextValue = values::Value<QString>;

inline TextValue *addText(values::Tree &tree, const QString &parent, const QString &name, const QString &content)
{
    auto *const value = addNew<TextValue>(tree, parent, name);
    value->SetValue(content, nullptr);
    return value;
}

/// "/K/Device" with "State" = "idle", and its mirror "/Sub/A/Device".
class Mirror : public testing::Test
{
protected:
    QString at(const char *path) const
    {
        const values::ValueBase *const value = clientTree.findValue(QLatin1String(path));
        return value ? value->GetStringValue() : QStringLiteral("(absent)");
    }
    QString atServer(const char *path) const
    {
        const values::ValueBase *const value = serverTree.findValue(QLatin1String(path));
        return value ? value->GetStringValue() : QStringLiteral("(absent)");
    }
    TextValue *text(values::Tree &tree, const char *path) const
    {
        return dynamic_cast<TextValue *>(tree.findValue(QLatin1String(path)));
    }

    values::Tree serverTree;
    values::Tree clientTree;
    TextValue *const state = addText(serverTree, QStringLiteral("/K/Device/"), QStringLiteral("State"),
                                     QStringLiteral("idle"));
    JoinedMirror pair{serverTree, clientTree, QStringLiteral("/K/Device"), QStringLiteral("/Sub/A/Device/")};
};

#include "tests/orbconnection/joinedmirror.h"

using namespace values;

namespace
{
/// A class of values that only who makes them knows.
class OddValue : public Value<int>
{
public:
    ValueType GetType() const override { return 150; }
    QString GetTypeName() const override { return QStringLiteral("Odd"); }
};

/// Nodes that a client makes, by themselves or for its values.
class ClientsNode : public JoinedTrees
{
protected:
    bool isHere(const char *path) const { return clientTree.findNode(QLatin1String(path)); }
    TextValue *addOwn(const QString &content = QString())
    {
        return addText(clientTree, QStringLiteral("/Sub/A/Device/D1/D2"), QStringLiteral("Own"), content);
    }
    void removeOwn()
    {
        clientTree.removeValue(QStringLiteral("/Sub/A/Device/D1/D2/Own"));
        pair.carry();
        EXPECT_FALSE(isHere("/Sub/A/Device/D1"));
        expectEqualTrees();
    }
};

TEST_F(ClientsNode, GoesWhenNothingIsBelowIt)
{
    clientTree.addNode(QStringLiteral("/Sub/A/Device/Before"));
    pair.connect();
    expectEqualTrees();
    clientTree.addNode(QStringLiteral("/Sub/A/Device/D1/D2"));
    pair.carry();
    expectEqualTrees();
    pair.disconnect();
    clientTree.addNode(QStringLiteral("/Sub/A/Device/D1/D2"));
    pair.client.flush();
    EXPECT_TRUE(isHere("/Sub/A/Device/D1/D2")); // while no server says otherwise
    pair.connect();
    expectEqualTrees();
}

TEST_F(ClientsNode, StaysForAValueThatWasNeverSet)
{
    pair.connect();
    addOwn(QStringLiteral("seed"));
    pair.carry();
    EXPECT_TRUE(isHere("/Sub/A/Device/D1/D2"));
    pair.disconnect();
    pair.connect();
    EXPECT_EQ(at("/Sub/A/Device/D1/D2/Own"), QStringLiteral("seed"));
    removeOwn();
}

TEST_F(ClientsNode, GoesWithAnAnnouncementThatWasNeverSent)
{
    pair.connect();
    addOwn()->HasChanged(ChangeCodeValue, nullptr);
    removeOwn();
}

TEST_F(ClientsNode, GoesWithAValueThatIsTooLargeForTheServer)
{
    pair.timing.maximumBatchBytes = 1000;
    JoinedMirror small(serverTree, clientTree, QStringLiteral("/K/Device"), QStringLiteral("/Small"), pair.timing);
    small.connect();
    addText(clientTree, QStringLiteral("/Small/D1"), QStringLiteral("Own"), QString(5000, u'x'))
        ->HasChanged(ChangeCodeValue, nullptr);
    small.carry();
    EXPECT_TRUE(isHere("/Small/D1"));
    clientTree.removeValue(QStringLiteral("/Small/D1/Own"));
    small.carry();
    EXPECT_FALSE(isHere("/Small/D1"));
}

TEST_F(ClientsNode, GoesWithAValueWhoseClassTheServerDoesNotKnow)
{
    pair.connect();
    auto *const odd = addNew<OddValue>(clientTree, QStringLiteral("/Sub/A/Device/D1/D2"), QStringLiteral("Own"));
    pair.client.flush();
    for (const int content : {1, 2, 3}) {
        odd->SetValue(content, nullptr);
        pair.carry();
        ASSERT_EQ(at("/Sub/A/Device/D1/D2/Own"), QString::number(content));
    }
    removeOwn();
}

TEST_F(ClientsNode, GivesWayWithItsValueOfAClassThatTheServerDoesNotKnow)
{
    pair.connect();
    addNew<OddValue>(clientTree, QStringLiteral("/Sub/A/Device/D1/D2"), QStringLiteral("Own"))
        ->HasChanged(ChangeCodeValue, nullptr);
    pair.carry();
    addText(serverTree, QStringLiteral("/K/Device/D1/D2"), QStringLiteral("Own"), QStringLiteral("server's"));
    pair.carry();
    expectEqualTrees();
    text(clientTree, "/Sub/A/Device/D1/D2/Own")->SetValue(QStringLiteral("client's"), nullptr);
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    expectEqualTrees();
}

TEST_F(ClientsNode, IsTheServersOnceThatHasIt)
{
    pair.connect();
    addOwn();
    pair.carry();
    serverTree.addNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    clientTree.removeValue(QStringLiteral("/Sub/A/Device/D1/D2/Own"));
    pair.carry();
    EXPECT_TRUE(isHere("/Sub/A/Device/D1"));
    expectEqualTrees();
    serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    expectEqualTrees();
}

TEST_F(ClientsNode, ComesBackAtTheMirroredPathAlsoWhereTheServerHasNone)
{
    pair.connect();
    serverTree.removeNode(QStringLiteral("/K"));
    pair.carry();
    clientTree.removeNode(QStringLiteral("/Sub"));
    pair.carry();
    EXPECT_TRUE(isHere("/Sub/A/Device"));
    serverTree.addNode(QStringLiteral("/K/Device/D1"));
    pair.carry();
    expectEqualTrees();
}
} // namespace

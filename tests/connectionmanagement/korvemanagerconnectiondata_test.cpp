#include "connectionmanagement/korvemanagerconnectiondata.h"

#include "orbconnection/vtconnectionobserver.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <QSignalSpy>

using namespace KorveCommon;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const QString clientPath = QStringLiteral("/TicTest/Devices");

/// A tic of subsystem "Alpha" to an address where nobody is; the tests speak for its connection.
class Tic : public LiveInstallation
{
protected:
    using Data = KorveManagerConnectionData;

    ~Tic() override { values::Tree::Instance().removeNode(QStringLiteral("/TicTest")); }

    void make(ConnectionType type)
    {
        connection = std::make_shared<VtConnectionObserver>(QStringLiteral("/KORVE/Device"), clientPath,
                                                            VtConnectData{{}, address(), 8004},
                                                            QStringLiteral("/ReregisterCorba"));
        tic = std::make_unique<Data>(connection, type, QStringLiteral("Alpha"));
        write("ServerUp", &Data::KorveServerConnectionEstablished);
        write("ServerDown", &Data::KorveServerConnectionDisconnected);
        write("DevicesUp", &Data::DevicesConnectionEstablished);
        write("DevicesDown", &Data::DevicesConnectionDisconnected);
        write("ChannelUp", &Data::ChannelConnectionEstablished);
        write("ChannelDown", &Data::ChannelConnectionDisconnected);
        write("Changed", &Data::ConnectionChanged);
        write("NodeAdded", &Data::si_deviceNodeAdded);
    }
    std::vector<std::string> take() { return std::exchange(told, {}); }

    std::shared_ptr<VtConnectionObserver> connection;
    std::unique_ptr<Data> tic;

private:
    template <typename Signal> void write(const char *name, Signal signal)
    {
        QObject::connect(tic.get(), signal, tic.get(),
                         [this, name](const QString &s) { told.push_back(name + (" " + s.toStdString())); });
    }

    std::vector<std::string> told;
};

TEST_F(Tic, IsDownInTheBeginning)
{
    make(DeviceConnection);
    EXPECT_FALSE(tic->isConnected());
    EXPECT_EQ(tic->subsystem(), QStringLiteral("Alpha"));
    EXPECT_EQ(tic->connectionType(), DeviceConnection);
    EXPECT_EQ(tic->getConnection(), connection);
    EXPECT_TRUE(tic->subsystemListEntry().isEmpty());
}

TEST_F(Tic, ToTheDevicesTellsInOrderAndInTheNameOfItsOwnSubsystem)
{
    make(DeviceConnection);
    Q_EMIT connection->si_connected(QStringLiteral("Other"));
    EXPECT_THAT(take(), ElementsAre("DevicesUp Alpha", "Changed Alpha", "NodeAdded Alpha"));
    EXPECT_TRUE(tic->isConnected());
    Q_EMIT connection->si_connected(QStringLiteral("Other"));
    EXPECT_THAT(take(), IsEmpty());
    Q_EMIT connection->si_disconnected(QStringLiteral("Other"));
    EXPECT_THAT(take(), ElementsAre("DevicesDown Alpha", "Changed Alpha"));
    EXPECT_FALSE(tic->isConnected());
    Q_EMIT connection->si_disconnected(QStringLiteral("Other"));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(Tic, ToTheServerTellsOfTheServer)
{
    make(ServerConnection);
    Q_EMIT connection->si_connected(QString());
    Q_EMIT connection->si_disconnected(QString());
    EXPECT_THAT(take(), ElementsAre("ServerUp Alpha", "Changed Alpha", "ServerDown Alpha", "Changed Alpha"));
}

TEST_F(Tic, ToAChannelTellsOfTheChannel)
{
    make(ChannelConnection);
    Q_EMIT connection->si_connected(QString());
    Q_EMIT connection->si_disconnected(QString());
    EXPECT_THAT(take(), ElementsAre("ChannelUp Alpha", "Changed Alpha", "ChannelDown Alpha", "Changed Alpha"));
}

TEST_F(Tic, GoesDownSilentlyWhenItsConnectionEnds)
{
    make(ServerConnection);
    Q_EMIT connection->si_connected(QString());
    take();
    Q_EMIT connection->si_clientTerminating();
    EXPECT_FALSE(tic->isConnected());
    Q_EMIT connection->si_disconnected(QString());
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(Tic, TellsOfDeviceNodesThatAppear)
{
    values::Tree &tree = values::Tree::Instance();
    tree.addNode(clientPath);
    make(DeviceConnection);
    tree.addNode(clientPath + QStringLiteral("/before"));
    EXPECT_THAT(take(), IsEmpty());
    Q_EMIT connection->si_connected(QString());
    take();
    tree.addNode(clientPath + QStringLiteral("/D1"));
    EXPECT_THAT(take(), ElementsAre("NodeAdded Alpha"));
    tree.addNode(clientPath + QStringLiteral("/D1/Status"));
    tree.removeNode(clientPath + QStringLiteral("/D1"));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(Tic, ObservesItsNodeBeforeItTellsAnybody)
{
    values::Tree &tree = values::Tree::Instance();
    tree.addNode(clientPath);
    make(DeviceConnection);
    QObject::connect(tic.get(), &Data::DevicesConnectionEstablished, tic.get(),
                     [&] { tree.addNode(clientPath + QStringLiteral("/D3")); });
    Q_EMIT connection->si_connected(QString());
    EXPECT_THAT(take(), ElementsAre("DevicesUp Alpha", "NodeAdded Alpha", "Changed Alpha", "NodeAdded Alpha"));
}

TEST_F(Tic, ObservesTheNodeThatIsThereWhenItComesUpAgain)
{
    values::Tree &tree = values::Tree::Instance();
    tree.addNode(clientPath);
    make(DeviceConnection);
    Q_EMIT connection->si_connected(QString());
    Q_EMIT connection->si_disconnected(QString());
    tree.removeNode(clientPath);
    tree.addNode(clientPath);
    Q_EMIT connection->si_connected(QString());
    take();
    tree.addNode(clientPath + QStringLiteral("/D4"));
    EXPECT_THAT(take(), ElementsAre("NodeAdded Alpha"));
}

TEST_F(Tic, CopyWithoutANodeObservesNone)
{
    values::Tree &tree = values::Tree::Instance();
    tree.addNode(clientPath);
    make(DeviceConnection);
    Data copy(*tic);
    EXPECT_FALSE(copy.isConnected());
    QSignalSpy added(&copy, &Data::si_deviceNodeAdded);
    tree.addNode(clientPath + QStringLiteral("/D5"));
    EXPECT_EQ(added.count(), 0);
}

TEST_F(Tic, IgnoresWhatIsNotItsNode)
{
    values::Tree &tree = values::Tree::Instance();
    values::Node *const other = tree.addNode(QStringLiteral("/TicTest/Other"));
    tree.addNode(clientPath);
    make(DeviceConnection);
    tic->Update(nullptr, ChangeCodeChildAdded);
    Q_EMIT connection->si_connected(QString());
    EXPECT_THAT(take(), testing::SizeIs(3));
    tic->Update(other, ChangeCodeChildAdded);
    tic->Update(nullptr, ChangeCodeChildAdded);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(Tic, CopyObservesTheSameNodeByItself)
{
    values::Tree &tree = values::Tree::Instance();
    tree.addNode(clientPath);
    make(DeviceConnection);
    Q_EMIT connection->si_connected(QString());
    tic->subsystemListEntry() << QStringLiteral("Alpha") << QStringLiteral("West");
    Data copy(*tic);
    tic.reset();
    EXPECT_EQ(copy.getConnection(), connection);
    EXPECT_EQ(copy.connectionType(), DeviceConnection);
    EXPECT_EQ(copy.subsystem(), QStringLiteral("Alpha"));
    EXPECT_EQ(copy.subsystemListEntry().size(), 2);
    EXPECT_TRUE(copy.isConnected());
    QSignalSpy added(&copy, &Data::si_deviceNodeAdded);
    tree.addNode(clientPath + QStringLiteral("/D2"));
    EXPECT_EQ(added.count(), 1);
}

TEST_F(Tic, SaysNothingOfAConnectionThatEndsWithIt)
{
    /// Goes down, and says so, when it ends.
    class LoudConnection : public VtConnectionObserver
    {
    public:
        using VtConnectionObserver::VtConnectionObserver;
        ~LoudConnection() override { Q_EMIT si_disconnected(getBaseClientPath()); }
    };
    auto owner = std::make_unique<Data>(
        std::make_shared<LoudConnection>(QStringLiteral("/KORVE/Device"), clientPath,
                                         VtConnectData{{}, address(), 8004}, QString()),
        ServerConnection, QStringLiteral("Alpha"));
    owner->onConnected(QString());
    QSignalSpy changed(owner.get(), &Data::ConnectionChanged);
    owner.reset();
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(Tic, MayBeDeletedByWhoeverItTells)
{
    make(DeviceConnection);
    connection.reset(); // the tic has it alone
    QPointer<Data> watched(tic.get());
    const std::shared_ptr<VtConnectionObserver> speaking = tic->getConnection();
    QObject::connect(tic.get(), &Data::DevicesConnectionEstablished, tic.get(), [this] { tic.reset(); });
    Q_EMIT speaking->si_connected(QString());
    EXPECT_TRUE(watched.isNull());
    EXPECT_THAT(take(), ElementsAre("DevicesUp Alpha"));
}
} // namespace

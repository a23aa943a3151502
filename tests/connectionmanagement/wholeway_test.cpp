#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"

#include "tests/connectionmanagement/liveinstallation.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <QSignalSpy>

using namespace KorveCommon;
using values::Tree;

namespace
{
/// A display station that finds a manager whose tree is served by another process.
class WholeWay : public LiveInstallation
{
protected:
    using Handler = KorveGUI::KorveGuiToServerCorbaHandler;

    WholeWay() { registerManager(); }

    void startTree()
    {
        tree = std::make_unique<ServiceProcess>(QStringLiteral(TREE_SERVER_PROGRAM),
                                                QStringList{address(), QStringLiteral("200")});
        tree->tell("set /KORVE/Device/D1/Name first");
        tree->tell("set /KORVE/Command/Name commands");
    }
    static bool isThere(const char *device)
    {
        return Tree::Instance().findNode(QStringLiteral("/SubSystems/Alpha/KORVE/Device/") + QLatin1String(device));
    }

    std::unique_ptr<ServiceProcess> tree;
    const std::shared_ptr<HMIServerConnectionData> station = std::make_shared<HMIServerConnectionData>(QString());
    Handler handler{QString(), station, QString()};
};

TEST_F(WholeWay, LeadsToTheManagerAndItsDevices)
{
    startTree();
    announceTree();
    ASSERT_TRUE(comesTrue([this] { return handler.IsConnected() && isThere("D1"); }));
    EXPECT_EQ(station->GetCurrentSubsystem(), QStringLiteral("Alpha"));
    EXPECT_TRUE(station->IsDeviceConnected());
    EXPECT_TRUE(station->IsServerConnected());

    QSignalSpy nodes(station.get(), &AbstractServerConnectionData::si_deviceNodeAdded);
    tree->tell("set /KORVE/Device/D2/Name second");
    EXPECT_TRUE(comesTrue([&] { return nodes.count() > 0 && isThere("D2"); }));
}

TEST_F(WholeWay, IsFoundAgainWhenTheTreeHasBeenAway)
{
    startTree();
    announceTree();
    ASSERT_TRUE(comesTrue([this] { return handler.IsConnected(); }));
    QSignalSpy down(station.get(), &AbstractServerConnectionData::si_allTicsDisconnected);
    tree->kill();
    ASSERT_TRUE(comesTrue([this] { return !handler.IsConnected(); }));
    EXPECT_EQ(down.count(), 1);
    startTree();
    EXPECT_TRUE(comesTrue([this] { return handler.IsConnected(); }));
}

TEST_F(WholeWay, MayBeginBeforeTheTreeIsThere)
{
    announceTree();
    ASSERT_TRUE(comesTrue([this] { return !station->GetCurrentSubsystem().isEmpty(); }));
    EXPECT_FALSE(handler.IsConnected());
    startTree();
    EXPECT_TRUE(comesTrue([this] { return handler.IsConnected(); }));
}
} // namespace

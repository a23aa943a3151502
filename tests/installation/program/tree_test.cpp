#include "tests/installation/program/installationfixture.h"
#include "tests/support/waiting.h"

#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectionobserver.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <QtTest/QTest>

namespace
{

/// With the manager's tree mirrored.
class PublishedTree : public InstallationFixture
{
protected:
    static VtConnectData managersTree()
    {
        VtConnectData where;
        where.ipAddress = address();
        return where;
    }

    /// Waits, bounded, until the value says so, and says so validly.
    static bool becomes(const char *path, bool content)
    {
        return QTest::qWaitFor(
            [&] {
                const auto *const value =
                    dynamic_cast<values::Value<bool> *>(values::Tree::Instance().findValue(QLatin1String(path)));
                return value && value->GetState() == values::ValueStateValid && value->GetValue() == content;
            },
            patienceMs);
    }

    const QString devices = QStringLiteral("/KORVE/Device");
    VtConnectionObserver mirror{devices, devices, managersTree(), QString()};
};

} // namespace

TEST_F(PublishedTree, ShowsTheDevices)
{
    EXPECT_TRUE(becomes("/KORVE/Device/REC1/KorveAvailable", true));
    EXPECT_TRUE(becomes("/KORVE/Device/REC1/Admin/IsVirtual", false));
    const values::ValueBase *const firmware =
        values::Tree::Instance().findValue(QStringLiteral("/KORVE/Device/REC1/Status/Version/FirmwareVersion"));
    ASSERT_TRUE(firmware);
    EXPECT_EQ(firmware->GetStringValue(), QLatin1String("KRV#R100#0.1_0.1"));
}

TEST_F(PublishedTree, TellsOfARecorderThatGoesAndComes)
{
    ASSERT_TRUE(becomes("/KORVE/Device/REC1/KorveAvailable", true));
    shared->recorder->kill();
    EXPECT_TRUE(becomes("/KORVE/Device/REC1/KorveAvailable", false));
    shared->recorder = start("recorder");
    EXPECT_TRUE(becomes("/KORVE/Device/REC1/KorveAvailable", true));
}

TEST_F(PublishedTree, IsThereAgainAfterAKillOfTheManager)
{
    ASSERT_TRUE(becomes("/KORVE/Device/REC1/KorveAvailable", true));
    shared->manager->kill();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !mirror.isConnected(); }, patienceMs));
    shared->manager = start("manager");
    EXPECT_TRUE(becomes("/KORVE/Device/REC1/KorveAvailable", true));
}

TEST_F(PublishedTree, IsRegisteredByItsAddress)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const CCO::IF_CCO_c_var names = CorbaCommon::OrbHandler::Instance().centralService(std::chrono::seconds(2));
    CCO::seqString_var values = names->ResolveValues("KorveManager/VTConnect", CCO::rtInstallation);
    ASSERT_EQ(values->length(), 2u);
    EXPECT_EQ(QString::fromUtf8(values[0u]), address());
    EXPECT_STREQ(values[1u], "8004");
}

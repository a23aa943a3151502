#include "tests/installation/program/installationfixture.h"

#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "objectmodel/korve_recorddata.h"
#include "orbconnection/orbhandler.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <QSignalSpy>
#include <QtTest/QTest>

using namespace KorveCommon;

namespace
{

struct RestartCase {
    const char *name;
    const char *role;
    bool isKilled; ///< or ends as it is asked to
    const char *registeredName = "";
};

/// A client of the library, while one service after the other is started anew.
class Restart : public InstallationFixture, public testing::WithParamInterface<RestartCase>
{
protected:
    template <typename Condition> static bool comesTrue(Condition condition)
    {
        return QTest::qWaitFor(condition, patienceMs);
    }

    static bool isRegistered(const char *name)
    {
        const CCO::IF_CCO_c_var names = CorbaCommon::OrbHandler::Instance().centralService(std::chrono::seconds(2));
        try {
            return !CORBA::is_nil(CORBA::Object_var(names->Resolve(name, CCO::rtInstallation)));
        } catch (const CCO::IF_CCO_c_Naming::InvalidType &) {
            return true; // values
        } catch (const CORBA::SystemException &) {
            return false;
        }
    }
    static bool isAllRegistered()
    {
        return isRegistered("KorveManager/IF_KRV_c_KRV") && isRegistered("KorveManager/VTConnect") &&
               isRegistered("KorveRecorder/REC1/IF_Control") && isRegistered("KorveRecorder/REC1/IF_Import");
    }
    static bool isShownAsAvailable()
    {
        const QString path = QStringLiteral("/SubSystems/Main/KORVE/Device/REC1/KorveAvailable");
        const auto *const value = dynamic_cast<values::Value<bool> *>(values::Tree::Instance().findValue(path));
        return value && value->GetState() == values::ValueStateValid && value->GetValue();
    }

    QStringList clientsRecords()
    {
        QVector<KORVE_XML::KORVE_RecordData> records;
        QStringList ids;
        if (handler.getAllRecords(QStringLiteral("REC1"), records) == 0)
            for (const KORVE_XML::KORVE_RecordData &record : std::as_const(records))
                ids << record.GetRecordID();
        return ids;
    }
    bool has(const QStringList &records)
    {
        return isAllRegistered() && isShownAsAvailable() && handler.IsConnected() && clientsRecords() == records;
    }

    /// Names go with an orderly end, not only when somebody finds that nothing is behind them.
    static void endAndTakeBack(ServiceProcess &service)
    {
        EXPECT_EQ(service.end(), 0);
        EXPECT_FALSE(*GetParam().registeredName && isRegistered(GetParam().registeredName));
    }

    const std::shared_ptr<HMIServerConnectionData> client = std::make_shared<HMIServerConnectionData>(QString());
    KorveGUI::KorveGuiToServerCorbaHandler handler{QString(), client, QString()};
};

} // namespace

TEST_P(Restart, LosesNothing)
{
    const bool isOfManager = GetParam().role == std::string("manager");
    ASSERT_TRUE(comesTrue([] { return isAllRegistered(); }));
    ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("one.wav"), 10)}).exitCode, 0);
    ASSERT_TRUE(managerKnowsTheDevice());
    const QStringList records = recordIds();
    ASSERT_TRUE(comesTrue([&] { return has(records); }));

    QSignalSpy losses(client.get(), &AbstractServerConnectionData::si_allTicsDisconnected);
    std::unique_ptr<ServiceProcess> &service = process(GetParam().role);
    if (GetParam().isKilled)
        service->kill();
    else
        endAndTakeBack(*service);
    service = start(GetParam().role);
    EXPECT_TRUE(comesTrue([&] { return losses.count() == 1 || !isOfManager; }));
    EXPECT_TRUE(comesTrue([&] { return has(records); }));
    EXPECT_EQ(losses.count(), isOfManager ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Services, Restart,
                         testing::Values(RestartCase{"KilledCentralService", "cco", true},
                                         RestartCase{"EndedCentralService", "cco", false},
                                         RestartCase{"KilledManager", "manager", true},
                                         RestartCase{"EndedManager", "manager", false, "KorveManager/IF_KRV_c_KRV"},
                                         RestartCase{"KilledRecorder", "recorder", true},
                                         RestartCase{"EndedRecorder", "recorder", false, "KorveRecorder/REC1/IF_Control"}),
                         [](const auto &info) { return std::string(info.param.name); });

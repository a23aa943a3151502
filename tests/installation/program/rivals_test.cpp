#include "tests/installation/program/installationfixture.h"

#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"
#include "orbconnection/refusednames.h"
#include "tests/installation/program/visitedrecorder.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>

using CorbaCommon::OrbHandler;

namespace
{

/// The services of a host of its own, at the central service of another.
class Rival
{
public:
    Rival(const QStringList &roles, const QString &address, const QString &centralService)
        : process(QStringLiteral(INSTALLATION_PROGRAM), arguments(roles, address, centralService))
    {
    }
    void kill() { process.kill(); }
    void suspend() { process.suspend(); }
    /// Its state folder cannot be used any more.
    void blockState() const
    {
        QDir(folder.filePath(QStringLiteral("state"))).removeRecursively();
        QFile(folder.filePath(QStringLiteral("state"))).open(QIODevice::WriteOnly);
    }
    void resume() { process.resume(); }
    int end() { return process.end(); }
    bool isRunning() const { return process.isRunning(); }
    /// What it has said of itself first: "ready ROLE HOST:PORT" or "standing by ROLE HOST:PORT: REASON".
    std::string firstLine() const { return process.readyWords().join(u' ').toStdString(); }
    std::string nextLine() { return process.readLine().toStdString(); }
    /// "HOST:PORT"
    QString endpoint() const
    {
        const QStringList &words = process.readyWords();
        return words[0] == QLatin1String("ready") ? words.value(2) : words.value(3).chopped(1);
    }

private:
    QStringList arguments(const QStringList &roles, const QString &address, const QString &centralService) const
    {
        QFile file(folder.filePath(QStringLiteral("host.ini")));
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("cannot write settings");
        file.write(QStringLiteral("[host]\naddress=%1\ncco=%2\n[recorder]\ndevice=REC1\n")
                       .arg(address, centralService)
                       .toUtf8());
        QStringList all{QStringLiteral("--end-with-parent"), QStringLiteral("--state"), folder.filePath("state"),
                        QStringLiteral("--config"), file.fileName()};
        for (const QString &role : roles)
            all << QStringLiteral("--role") << role;
        return all;
    }

    const QTemporaryDir folder;
    ServiceProcess process;
};

/// Hosts with the same names, beside the installation that this program's ORB belongs to.
class Rivals : public InstallationFixture
{
protected:
    Rivals()
    {
        OrbHandler::Instance(); // set up as for the other suites
        qunsetenv("KORVE_ADDRESS"); // it would beat the files
        qunsetenv("KORVE_CCO");
        centralService.emplace(QStringList{QStringLiteral("cco")}, center.address(), center.address());
    }

    std::unique_ptr<Rival> start(const char *role, const LoopbackLease &at) const
    {
        return std::make_unique<Rival>(QStringList{QLatin1String(role)}, at.address(), center.address());
    }
    /// Where what has the name is; empty when nobody has it.
    QString holderOf(const char *name) const
    {
        const CORBA::Object_var object = OrbHandler::Instance().ResolveInterfaceViaCCO(name, center.address());
        return CORBA::is_nil(object) ? QString() : CorbaCommon::publishedEndpoint(object).host;
    }
    QStringList valuesOf(const char *path) const
    {
        const QString reference = CorbaCommon::centralServiceReference(center.address());
        const CORBA::Object_var object = OrbHandler::Instance().orb()->string_to_object(reference.toLatin1().constData());
        const CCO::seqString_var found =
            CCO::IF_CCO_c_var(CCO::IF_CCO_c::_unchecked_narrow(object))->ResolveValues(path, CCO::rtInstallation);
        QStringList values;
        for (CORBA::ULong position = 0; position < found->length(); ++position)
            values << QString::fromUtf8(found.in()[position].in());
        return values;
    }
    bool isRefused(const QString &name, const QString &address) const
    {
        const QString beginning = name + QLatin1Char('/') + address + QLatin1Char(':');
        return !valuesOf(CorbaCommon::refusedNames).filter(beginning).isEmpty();
    }
    /// Whether calls of the object are answered there.
    static bool isServed(const char *key, const Rival &at)
    {
        const QByteArray text = "corbaloc::1.2@" + at.endpoint().toLatin1() + '/' + key;
        const CORBA::Object_var object = OrbHandler::Instance().orb()->string_to_object(text.constData());
        try {
            return !object->_non_existent();
        } catch (const CORBA::OBJECT_NOT_EXIST &) {
            return false;
        }
    }
    static bool comesTrue(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, patienceMs); }

    const LoopbackLease center;
    const LoopbackLease east;
    const LoopbackLease west;
    std::optional<Rival> centralService;
};

} // namespace

TEST_F(Rivals, WithOneDeviceIdAreOneRecorderUntilTheFirstIsGone)
{
    const auto first = start("recorder", east);
    ASSERT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Import") == east.address(); }));
    const auto second = start("recorder", west);
    EXPECT_TRUE(comesTrue([&] { return isRefused(QStringLiteral("KorveRecorder/REC1/IF_Control"), west.address()); }));
    EXPECT_EQ(holderOf("KorveRecorder/REC1/IF_Control"), east.address());
    EXPECT_EQ(holderOf("KorveRecorder/REC1/IF_Import"), east.address());
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Control") == west.address(); }));
    EXPECT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Import") == west.address(); }));
    EXPECT_TRUE(valuesOf(CorbaCommon::refusedNames).isEmpty());
}

TEST_F(Rivals, AsManagersAreOneUntilTheFirstIsGone)
{
    const auto first = start("manager", east);
    ASSERT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == east.address(); }));
    const auto second = start("manager", west);
    EXPECT_TRUE(comesTrue([&] { return isRefused(QStringLiteral("KorveManager/IF_KRV_c_KRV"), west.address()); }));
    EXPECT_EQ(holderOf("KorveManager/IF_KRV_c_KRV"), east.address());
    EXPECT_EQ(valuesOf("KorveManager/VTConnect").value(0), east.address());
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return holderOf("KorveManager/IF_KRV_c_KRV") == west.address(); }));
    EXPECT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == west.address(); }));
}

TEST_F(Rivals, DoNotLoseTheirManagerToARecorderThatIsRefused)
{
    const auto first = start("recorder", east);
    ASSERT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Control") == east.address(); }));
    const Rival both({QStringLiteral("recorder"), QStringLiteral("manager")}, west.address(), center.address());
    EXPECT_TRUE(comesTrue([&] { return isRefused(QStringLiteral("KorveRecorder/REC1/IF_Control"), west.address()); }));
    EXPECT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == west.address(); }));
}

TEST_F(Rivals, BeginWithoutACentralService)
{
    centralService.reset();
    const auto only = start("manager", east);
    EXPECT_EQ(only->firstLine(), "ready manager " + east.address().toStdString() + ":8004");
    EXPECT_TRUE(isServed("KorveManager", *only) && isServed("ValueTree", *only));
    centralService.emplace(QStringList{QStringLiteral("cco")}, center.address(), center.address());
    EXPECT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == east.address(); }));
}

TEST_F(Rivals, AsManagersLookAtRecordersOneAtATime)
{
    VisitedRecorder recorder;
    recorder.registerAs("KorveRecorder/FAKE/IF_Control", center.address());
    const auto first = start("manager", east);
    ASSERT_TRUE(comesTrue([&] { return recorder.visitors() == QStringList(east.address()); }));
    const auto second = start("manager", west);
    const int looks = recorder.looks();
    ASSERT_TRUE(comesTrue([&] { return recorder.looks() > looks + 5; })); // a manager's first look comes at once
    EXPECT_EQ(recorder.visitors(), QStringList(east.address()));
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return recorder.visitors().contains(west.address()); }));
}

namespace
{

struct RivalCase {
    const char *role;
    const char *name;
    std::vector<const char *> keys; ///< of its objects
};

/// Two services of one role.
class RivalServices : public Rivals, public testing::WithParamInterface<RivalCase>
{
protected:
    std::unique_ptr<Rival> start(const LoopbackLease &at) const { return Rivals::start(GetParam().role, at); }
    static std::string titleOf(const Rival &rival)
    {
        return std::string(GetParam().role) + ' ' + rival.endpoint().toStdString();
    }
    static std::string readyLine(const Rival &rival) { return "ready " + titleOf(rival); }
    static std::string standbyLine(const Rival &rival, const Rival &holder)
    {
        return "standing by " + titleOf(rival) + ": " + GetParam().name + " is held by another, at " +
               holder.endpoint().toStdString();
    }
    /// How many of its objects are.
    static std::size_t servedBy(const Rival &rival)
    {
        const auto &keys = GetParam().keys;
        return static_cast<std::size_t>(
            std::count_if(keys.begin(), keys.end(), [&](const char *key) { return isServed(key, rival); }));
    }

    const std::size_t all = GetParam().keys.size();
};

} // namespace

TEST_P(RivalServices, StandByUntilTheFirstIsGone)
{
    const auto first = start(east);
    EXPECT_EQ(first->firstLine(), readyLine(*first));
    ASSERT_TRUE(comesTrue([&] { return holderOf(GetParam().name) == east.address(); }));
    const auto second = start(west);
    EXPECT_EQ(second->firstLine(), standbyLine(*second, *first));
    EXPECT_EQ(servedBy(*second), 0u);
    EXPECT_EQ(servedBy(*first), all);
    first->kill();
    EXPECT_EQ(second->nextLine(), readyLine(*second));
    EXPECT_EQ(servedBy(*second), all);
    EXPECT_TRUE(comesTrue([&] { return holderOf(GetParam().name) == west.address(); }));
}

TEST_P(RivalServices, GiveWayWhenTheirNameIsAnothersByNow)
{
    const auto first = start(east);
    ASSERT_TRUE(comesTrue([&] { return holderOf(GetParam().name) == east.address(); }));
    const auto second = start(west);
    first->suspend();
    EXPECT_EQ(second->nextLine(), readyLine(*second));
    EXPECT_TRUE(comesTrue([&] { return holderOf(GetParam().name) == west.address(); }));
    first->resume();
    EXPECT_EQ(first->nextLine(), standbyLine(*first, *second));
    EXPECT_EQ(servedBy(*first), 0u);
    EXPECT_EQ(servedBy(*second), all);
    second->kill();
    EXPECT_EQ(first->nextLine(), readyLine(*first));
    EXPECT_EQ(servedBy(*first), all);
}

TEST_P(RivalServices, EndInOrderWhileTheyStandBy)
{
    const auto first = start(east);
    ASSERT_TRUE(comesTrue([&] { return holderOf(GetParam().name) == east.address(); }));
    const auto second = start(west);
    EXPECT_EQ(second->end(), 0);
    EXPECT_EQ(holderOf(GetParam().name), east.address());
}

TEST_P(RivalServices, EndWhenTheyCannotTakeOver)
{
    const auto first = start(east);
    ASSERT_TRUE(comesTrue([&] { return holderOf(GetParam().name) == east.address(); }));
    const auto second = start(west);
    second->blockState();
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return !second->isRunning(); }));
    EXPECT_EQ(holderOf(GetParam().name), QString());
}

INSTANTIATE_TEST_SUITE_P(
    Roles, RivalServices,
    testing::Values(RivalCase{"manager", "KorveManager/IF_KRV_c_KRV", {"KorveManager", "KorveManagerAdmin", "ValueTree"}},
                    RivalCase{"recorder", "KorveRecorder/REC1/IF_Control", {"IF_Control", "KorveRecorderImport"}}),
    [](const auto &info) { return std::string(info.param.role); });

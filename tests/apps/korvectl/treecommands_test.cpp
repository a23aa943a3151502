#include "tests/apps/korvectl/korvectlfixture.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include "orbconnection/vtconnectionobserver.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest/QTest>

#include <csignal>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{

/// With a value of strange names in the manager's tree, put there by another client.
class KorvectlTree : public KorvectlFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
        VtConnectData server;
        server.ipAddress = address();
        client =
            std::make_unique<VtConnectionObserver>(QStringLiteral("/Test"), QStringLiteral("/Test"), server, QString());
        ASSERT_TRUE(QTest::qWaitFor([] { return client->isConnected(); }, patienceMs));
        auto value = std::make_unique<values::Value<QString>>();
        value->SetName(leaf, nullptr);
        strange = value.get();
        values::Tree::Instance().addValue(node, std::move(value));
        QCoreApplication::processEvents(); // what a value is given before its creation is sent is no change
        ASSERT_TRUE(becomes(QStringLiteral("zw\u00f6lf \u2603")));
    }
    static void TearDownTestSuite()
    {
        client.reset();
        InstallationFixture::TearDownTestSuite();
    }

    /// Sets the value; waits, bounded, until the manager has it.
    static bool becomes(const QString &content)
    {
        strange->SetValue(content, nullptr);
        return QTest::qWaitFor([&] { return ask(get(path())).output.contains(content); }, patienceMs);
    }
    static QStringList get(const QString &path) { return {QStringLiteral("tree"), QStringLiteral("get"), path}; }
    static QStringList completed(const QString &line)
    {
        const QString word = line.section(u' ', -1);
        return ask({QStringLiteral("complete"), QStringLiteral("--"), line, word})
            .output.split(u'\n', Qt::SkipEmptyParts);
    }
    /// The type of the item at that path; empty when there is none.
    static QString typeIn(const QJsonArray &items, const char *path)
    {
        for (const QJsonValue &item : items)
            if (item.toObject()[QStringLiteral("path")].toString() == QLatin1String(path))
                return item.toObject()[QStringLiteral("type")].toString();
        return QString();
    }
    static QString path() { return node + u'/' + leaf; }

    static inline const QString node = QStringLiteral("/Test/K\u00f6ln Ost");
    static inline const QString leaf = QStringLiteral("Gr\u00f6\u00dfe: \"a b\" $c");
    static std::unique_ptr<VtConnectionObserver> client;
    static values::Value<QString> *strange;
};

std::unique_ptr<VtConnectionObserver> KorvectlTree::client;
values::Value<QString> *KorvectlTree::strange;

TEST_F(KorvectlTree, IsListedLevelByLevel)
{
    const Run root = ask(words("tree ls"));
    EXPECT_EQ(root.exitCode, 0) << root.errors.toStdString();
    const QString rows = QString(root.output).replace(QRegularExpression(QStringLiteral(" +")), QStringLiteral(" "));
    EXPECT_THAT(rows.toStdString(), AllOf(StartsWith("NAME TYPE STATE VALUE\n"), HasSubstr("\nKORVE/ node\n"),
                                          HasSubstr("\nTest/ node\n"), Not(HasSubstr("REC1"))));
    EXPECT_THAT(ask(words("tree ls -r /KORVE/Device")).output.toStdString(), HasSubstr("\nREC1/Admin/IsVirtual "));
}

TEST_F(KorvectlTree, IsListedForPrograms)
{
    const Run device = ask(words("tree ls KORVE//Device/REC1/ --json"));
    ASSERT_EQ(device.exitCode, 0) << device.errors.toStdString();
    EXPECT_EQ(typeIn(array(device), "/KORVE/Device/REC1/Admin"), QLatin1String("node"));
    EXPECT_EQ(typeIn(array(device), "/KORVE/Device/REC1/KorveAvailable"), QLatin1String("Bool"));
    EXPECT_EQ(typeIn(array(device), "/KORVE/Device/REC1/Admin/IsVirtual"), QString());
}

TEST_F(KorvectlTree, GivesValues)
{
    const Run one = ask(words("tree get /KORVE/Device/REC1/KorveAvailable"));
    EXPECT_EQ(one.exitCode, 0) << one.errors.toStdString();
    EXPECT_EQ(one.output.toStdString(), "PATH                               TYPE  STATE  VALUE\n"
                                        "/KORVE/Device/REC1/KorveAvailable  Bool  valid  true\n");
    const Run all = ask(words("tree get /KORVE/Device/REC1 --json"));
    EXPECT_EQ(all.exitCode, 0);
    EXPECT_EQ(typeIn(array(all), "/KORVE/Device/REC1/Admin/IsVirtual"), QLatin1String("Bool"));
    EXPECT_EQ(typeIn(array(all), "/KORVE/Device/REC1/Admin"), QString());
}

TEST_F(KorvectlTree, KeepsStrangeNamesAndContents)
{
    const Run run = ask(get(path()) << QStringLiteral("--json"));
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    const QJsonObject value = array(run).first().toObject();
    EXPECT_EQ(value[QStringLiteral("path")].toString(), path());
    EXPECT_EQ(value[QStringLiteral("value")].toString(), QStringLiteral("zw\u00f6lf \u2603"));
    EXPECT_EQ(value[QStringLiteral("state")].toString(), QLatin1String("valid"));
}

TEST_F(KorvectlTree, CompletesPathsAsTheyAreTyped)
{
    EXPECT_EQ(completed(QStringLiteral("korvectl tree get /Te")), QStringList{QStringLiteral("/Test/")});
    EXPECT_EQ(completed(QStringLiteral("korvectl tree get /Test/")), QStringList{node + u'/'});
    // The shell replaces what comes behind the last blank, which is quoted, or behind a colon.
    EXPECT_EQ(
        ask({QStringLiteral("complete"), QStringLiteral("--"),
             QStringLiteral("korvectl tree ls /Test/K\u00f6ln\\ Ost/G"), QStringLiteral("/Test/K\u00f6ln\\ Ost/G")})
            .output,
        path() + u'\n');
    EXPECT_EQ(ask({QStringLiteral("complete"), QStringLiteral("--"),
                   QStringLiteral("korvectl tree ls \"/Test/K\u00f6ln Ost/Gr\u00f6\u00dfe:"), QString()})
                  .output,
              QStringLiteral(" \"a b\" $c\n"));
    EXPECT_EQ(completed(QStringLiteral("korvectl records R")), QStringList{QStringLiteral("REC1")});
    EXPECT_EQ(completed(QStringLiteral("korvectl devices --subsystem ")), QStringList{QStringLiteral("Main")});
}

TEST_F(KorvectlTree, SaysThatThereIsNoSuchPath)
{
    for (const char *const command : {"tree ls /KORVE/Nope", "tree get /KORVE/Nope", "tree watch /KORVE/Nope"}) {
        const Run run = ask(words(command));
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_EQ(run.output, QString());
        EXPECT_EQ(run.errors,
                  QStringLiteral("korvectl: There is no /KORVE/Nope in the value tree at %1:8004.\n").arg(address()));
    }
}

TEST_F(KorvectlTree, SaysThatThereIsNoPathThatNoTreeCanHold)
{
    const QString deep = QStringLiteral("/a").repeated(300);
    const QString tooLong = u'/' + QString(70000, u'a');
    for (const QString &path : {deep, tooLong})
        for (const char *const command : {"ls", "get", "watch"}) {
            const Run run = ask({QStringLiteral("tree"), QLatin1String(command), path});
            EXPECT_EQ(run.exitCode, 3) << command << run.errors.right(100).toStdString();
            EXPECT_TRUE(run.errors.startsWith(QLatin1String("korvectl: There is no /a"))) << command;
        }
}

TEST_F(KorvectlTree, NamesTheAddressWhereNobodyAnswers)
{
    const LoopbackLease nobody;
    const Run run = ask(words("tree ls --timeout 0.5"), nobody.address());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(isOneSentence(run.errors) && run.errors.contains(nobody.address() + QLatin1String(":8003")));
}

TEST_F(KorvectlTree, IsWatchedUntilTerminated)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        QProcess watch;
        watch.start(QStringLiteral(KORVECTL_PROGRAM),
                    {QStringLiteral("tree"), QStringLiteral("watch"), node, QStringLiteral("--json")});
        const auto line = [&watch] {
            while (!watch.canReadLine() && watch.waitForReadyRead(patienceMs)) {
            }
            return QString::fromUtf8(watch.readLine());
        };
        EXPECT_TRUE(line().contains(QLatin1String("\"event\":\"connected\"")));
        EXPECT_TRUE(line().contains(QLatin1String("\"event\":\"value\"")));
        ::kill(static_cast<pid_t>(watch.processId()), signal);
        ASSERT_TRUE(watch.waitForFinished(patienceMs));
        EXPECT_EQ(watch.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(watch.exitCode(), 0);
    }
}

TEST_F(KorvectlTree, IsWatchedForSoManyChanges)
{
    QProcess watch;
    watch.start(QStringLiteral(KORVECTL_PROGRAM), {QStringLiteral("tree"), QStringLiteral("watch"), path(),
                                                   QStringLiteral("--count"), QStringLiteral("1")});
    QString output;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return (output += QString::fromUtf8(watch.readAllStandardOutput())).contains(leaf); }, patienceMs));
    strange->SetValue(QStringLiteral("another"), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return watch.state() == QProcess::NotRunning; }, patienceMs));
    EXPECT_EQ(watch.exitCode(), 0);
    output += QString::fromUtf8(watch.readAllStandardOutput());
    EXPECT_EQ(output.count(u'\n'), 3) << output.toStdString(); // titles, value, change
    EXPECT_TRUE(output.endsWith(QLatin1String("valid  another\n"))) << output.toStdString();
    EXPECT_TRUE(becomes(QStringLiteral("zw\u00f6lf \u2603")));
}

} // namespace

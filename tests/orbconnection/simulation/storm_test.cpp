#include "tests/orbconnection/simulation/random.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/serviceprocess.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <QTest>

#include <map>

using simulation::Random;

namespace
{
constexpr int changesEach = 100000;

/// What a process holds, by kind and path.
using Dump = std::map<QString, QStringList>;

/// A program that changes its tree at full speed (stormprogram.cpp).
class Stormer
{
public:
    Stormer(QString top, const LoopbackLease *own, const QStringList &server) : top(std::move(top)), own(own), server(server)
    {
    }

    void start(Random &random)
    {
        QStringList arguments{top, QString::number(random.below(1000000)), own ? own->address() : QStringLiteral("-")};
        arguments += server;
        process = std::make_unique<ServiceProcess>(QStringLiteral(STORM_PROGRAM), arguments);
        process->tell("run " + QByteArray::number(changesEach));
        isDone = false;
    }
    /// Until it has made some more changes, or all.
    void goOn()
    {
        if (!isDone)
            isDone = process->readLine() == QLatin1String("done");
    }
    void finish()
    {
        while (!isDone)
            goOn();
    }
    void restart(Random &random)
    {
        process->kill();
        start(random);
    }
    Dump dump()
    {
        process->tell("dump");
        Dump items;
        for (QString line = process->readLine(); !line.isEmpty() && line != QLatin1String("end"); line = process->readLine()) {
            const QStringList words = line.split(u' ');
            items[words.value(0) + u' ' + words.value(1)] = words.mid(2);
        }
        return items;
    }

    std::unique_ptr<ServiceProcess> process;
    bool isDone = true;

private:
    const QString top;
    const LoopbackLease *const own;
    const QStringList server;
};

/// What @p client lacks of @p server, or has otherwise, or alone; empty: nothing.
QString difference(const Dump &server, const Dump &client)
{
    for (const auto &[item, words] : server) {
        const auto found = client.find(item);
        if (found == client.end())
            return item + QStringLiteral(" is missing");
        if (found->second.value(1) != words.value(1))
            return item + QStringLiteral(" is %1, not %2").arg(found->second.value(1), words.value(1));
    }
    for (const auto &[item, words] : client)
        if (!server.contains(item) && words.value(0) != QLatin1String("own") && item != QLatin1String("node ."))
            return item + QStringLiteral(" is there alone");
    return {};
}

/// A server, a client of it, one that serves in turn, and a client of that one.
class MirrorStorm : public testing::Test
{
protected:
    MirrorStorm()
    {
        for (Stormer *stormer : all)
            stormer->start(random);
    }
    void disturb()
    {
        Stormer &victim = *random.oneOf(all);
        Stormer &other = *random.oneOf(all);
        other.goOn();
        if (random.happens(50))
            return victim.restart(random);
        victim.process->suspend();
        if (&victim != &other)
            other.goOn();
        victim.process->resume();
    }
    QString differences()
    {
        const Dump atServer = server.dump();
        const Dump atRelay = relay.dump();
        return difference(atServer, client.dump()) + difference(atServer, atRelay)
               + difference(atRelay, clientOfRelay.dump());
    }

    const std::uint64_t seed = qEnvironmentVariableIntValue("KORVE_STORM_SEED");
    Random random{seed};
    const LoopbackLease serverAddress;
    const LoopbackLease relayAddress;
    Stormer server{QStringLiteral("/K/D"), &serverAddress, {}};
    Stormer client{QStringLiteral("/C"), nullptr, {serverAddress.address(), QStringLiteral("/K/D")}};
    Stormer relay{QStringLiteral("/R"), &relayAddress, {serverAddress.address(), QStringLiteral("/K/D")}};
    Stormer clientOfRelay{QStringLiteral("/C"), nullptr, {relayAddress.address(), QStringLiteral("/R")}};
    const std::vector<Stormer *> all{&server, &client, &relay, &clientOfRelay};
};

TEST_F(MirrorStorm, EndsEqualAfterChangesKillsAndStops)
{
    for (int i = 0; i < 40; ++i)
        disturb();
    for (Stormer *stormer : all)
        stormer->finish();
    QString found;
    EXPECT_TRUE(QTest::qWaitFor([&] { return (found = differences()).isEmpty(); }, patienceMs))
        << qPrintable(found) << ", KORVE_STORM_SEED=" << seed;
}
} // namespace

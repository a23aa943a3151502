#include "tests/orbconnection/livetreeserver.h"

#include "tests/support/waiting.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

#include <QTest>

using namespace values;

LiveTreeServer::LiveTreeServer()
{
    startServer();
}

LiveTreeServer::~LiveTreeServer()
{
    Tree::Instance().removeNode(QStringLiteral("/"));
}

void LiveTreeServer::startServer(std::size_t queueBytes)
{
    process.reset();
    process = std::make_unique<ServiceProcess>(
        QStringLiteral(TREE_SERVER_PROGRAM),
        QStringList{lease.address(), QString::number(timing().heartbeat.count()), QString::number(queueBytes)});
}

void LiveTreeServer::killServer()
{
    process->kill();
}

QString LiveTreeServer::atServer(const char *path)
{
    process->tell(QByteArray("print ") + path);
    return process->readLine().mid(int(qstrlen("value ")));
}

QString LiveTreeServer::here(const char *path) const
{
    const ValueBase *const value = Tree::Instance().findValue(QLatin1String(path));
    return value ? value->GetStringValue() : QStringLiteral("(absent)");
}

bool LiveTreeServer::comesTrue(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}

MirrorTiming LiveTreeServer::timing()
{
    MirrorTiming timing;
    timing.heartbeat = std::chrono::milliseconds(700); // a busy machine holds main threads up
    timing.backOff = {std::chrono::milliseconds(10), std::chrono::milliseconds(50), std::chrono::milliseconds(100)};
    return timing;
}

#include "fuzz/orbconnection/batches.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace values;

namespace
{
/// A client and its side of the server, with all that they tell each other.
class Exchange
{
public:
    Exchange() { fill(serverTree); }

    void connect()
    {
        session = std::make_unique<mirror::MirrorSession>(
            serverTree, QStringLiteral("/K/Device"), MirrorTiming(),
            outlet([this](std::string bytes) { toClient.push_back(std::move(bytes)); }));
        client.begin();
        carry();
    }
    void carry()
    {
        client.flush();
        for (; pushed < toServer.size(); ++pushed)
            session->receive(toServer[pushed]);
        session->flush();
        for (; delivered < toClient.size(); ++delivered)
            client.receive(toClient[delivered]);
    }
    void set(const char *path, const char *content)
    {
        Tree &tree = path[1] == 'C' ? clientTree : serverTree;
        if (ValueBase *const value = tree.findValue(QLatin1String(path)))
            value->SetStringValue(QLatin1String(content), nullptr);
        carry();
    }
    void announce(const char *name)
    {
        auto value = std::make_unique<Value<qint64>>();
        value->SetName(QLatin1String(name), nullptr);
        clientTree.addValue(QStringLiteral("/C/Device/D2"), std::move(value));
        client.flush(); // what is set of it from here on is no seed
        set((QByteArray("/C/Device/D2/") + name).constData(), "5");
    }

    Tree serverTree;
    Tree clientTree;
    std::vector<std::string> toServer;
    std::vector<std::string> toClient;
    std::unique_ptr<mirror::MirrorSession> session;

private:
    mirror::MirrorClient client{clientTree, QStringLiteral("/C/Device"), QStringLiteral("Own"), {},
                                outlet([this](std::string bytes) { toServer.push_back(std::move(bytes)); })};
    std::size_t pushed = 0;
    std::size_t delivered = 0;
};

bool write(const QString &folder, const char *name, const std::vector<std::string> &batches)
{
    QFile file(folder + QLatin1Char('/') + QLatin1String(name));
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly))
        return false;
    for (const std::string &batch : batches) {
        char length[2];
        qToLittleEndian(static_cast<quint16>(batch.size()), length);
        file.write(length, sizeof length);
        file.write(batch.data(), static_cast<qint64>(batch.size()));
    }
    return file.flush();
}

bool write(const QString &folder, const char *name, const Exchange &exchange)
{
    return write(folder + QStringLiteral("/fuzz_mirrorclient"), name, exchange.toClient)
           && (exchange.toServer.empty()
               || write(folder + QStringLiteral("/fuzz_mirrorserver"), name, exchange.toServer));
}

bool writeAll(const QString &folder)
{
    Exchange snapshot;
    snapshot.connect();
    Exchange changes;
    changes.connect();
    changes.set("/K/Device/State", "busy");
    changes.set("/C/Device/State", "set");
    changes.set("/C/Device/Number", "3");
    changes.set("/K/Device/Number", "5");
    Exchange announcements;
    announcements.connect();
    announcements.announce("Mine");
    announcements.announce("Other");
    announcements.set("/C/Device/D2/Mine", "6");
    Exchange removals;
    removals.connect();
    removals.announce("Mine");
    removals.serverTree.removeNode(QStringLiteral("/K/Device/D1"));
    removals.serverTree.removeValue(QStringLiteral("/K/Device/Mode"));
    removals.set("/K/Device/D2/Mine", "7");
    removals.serverTree.removeNode(QStringLiteral("/K"));
    removals.carry();
    Exchange resynchronised;
    resynchronised.connect();
    resynchronised.session->startOver();
    resynchronised.set("/C/Device/Mode", "On");
    return write(folder, "snapshot", snapshot) && write(folder, "changes", changes)
           && write(folder, "announcements", announcements) && write(folder, "removals", removals)
           && write(folder, "resynchronised", resynchronised);
}
} // namespace

/// Writes honest exchanges as first inputs: makemirrorcorpus FOLDER
int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: makemirrorcorpus FOLDER\n");
        return 2;
    }
    if (writeAll(QString::fromLocal8Bit(argv[1])))
        return 0;
    fprintf(stderr, "cannot write below %s\n", argv[1]);
    return 1;
}

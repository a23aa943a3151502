#include "orbconnection/vtconnectionobserver.h"
#include "orbconnection/vtserver.h"
#include "tests/orbconnection/mirrorpair.h"
#include "tests/orbconnection/ownorb.h"

#include <stdexcept>

namespace
{
/// The pairs of one server's tree share the server.
std::shared_ptr<VtServer> serverOf(values::Tree &tree)
{
    static std::weak_ptr<VtServer> last;
    std::shared_ptr<VtServer> server = last.lock();
    if (!server)
        last = server = std::make_shared<VtServer>(tree, OwnOrb::timing());
    return server;
}

/// A tree server and a connection to it over the ORB.
class OrbPair : public MirrorPair
{
public:
    OrbPair(values::Tree &serverTree, const QString &serverPath, const QString &clientPath)
        : serverTree(serverTree), serverPath(serverPath), clientPath(clientPath)
    {
        OwnOrb::instance();
    }

    void connect() override
    {
        server = serverOf(serverTree);
        if (!connection)
            connection = std::make_unique<VtConnectionObserver>(serverPath, clientPath, OwnOrb::addressFromOutside(),
                                                                QString(), OwnOrb::timing());
        require([this] { return connection->isConnected(); });
    }
    void disconnect() override
    {
        server.reset();
        require([this] { return !connection->isConnected(); });
    }
    void carry() override
    {
        // What is set last on a side arrives last.
        ++mark;
        const auto hasMark = [this](const values::Tree &tree, const QString &path, const char *name) {
            const values::ValueBase *const value = tree.findValue(path + QLatin1String(name));
            return value && value->GetStringValue() == QString::number(mark);
        };
        setAtServer("ToClient");
        require([&] { return hasMark(clientTree, clientPath, "/Mark/ToClient"); });
        TextValue *const toServer = addMark(clientTree, clientPath, "ToServer");
        toServer->SetValue(QString::number(mark), nullptr);
        toServer->HasChanged(ChangeCodeValue, nullptr); // also where it is new, so that this is its seed
        require([&] { return hasMark(serverTree, serverPath, "/Mark/ToServer"); });
        setAtServer("Answer");
        require([&] { return hasMark(clientTree, clientPath, "/Mark/Answer"); });
    }
    bool carryUntil(const std::function<bool()> &condition) override { return OwnOrb::comesTrue(condition); }
    bool isConnected() const override { return connection && connection->isConnected(); }

private:
    static void require(const std::function<bool()> &condition)
    {
        if (!OwnOrb::comesTrue(condition))
            throw std::runtime_error("the mirror stands still");
    }
    static TextValue *addMark(values::Tree &tree, const QString &path, const char *name)
    {
        const QString parent = path + QStringLiteral("/Mark/");
        values::ValueBase *const present = tree.findValue(parent + QLatin1String(name));
        return present ? dynamic_cast<TextValue *>(present) : addNew<TextValue>(tree, parent, QLatin1String(name));
    }
    void setAtServer(const char *name)
    {
        addMark(serverTree, serverPath, name)->SetValue(QString::number(mark), nullptr);
    }

    values::Tree &serverTree;
    values::Tree &clientTree = values::Tree::Instance();
    const QString serverPath;
    const QString clientPath;
    std::shared_ptr<VtServer> server;
    std::unique_ptr<VtConnectionObserver> connection;
    int mark = 0;
};
} // namespace

std::unique_ptr<MirrorPair> MirrorPair::make(values::Tree &serverTree, const QString &serverPath,
                                             const QString &clientPath)
{
    return std::make_unique<OrbPair>(serverTree, serverPath, clientPath);
}

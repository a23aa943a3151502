#include "orbconnection/vtserver.h"

#include "appruntime/threadswitchingadministration.h"
#include "coresupport/trace.h"
#include "orbconnection/mirrorsession.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/treeservant.h"
#include "valuetreelib/tree.h"

#include <QPointer>
#include <QTimer>

#include <atomic>
#include <deque>

using mirror::MirrorSession;
using mirror::SessionLine;

namespace
{
constexpr char sourceName[] = "orbconnection/vtserver";
constexpr char key[] = "ValueTree";

void traceSession(const QString &what, const QString &path)
{
    traceAt(TraceLevel::Debug, sourceName, [&] { return QStringLiteral("%1: a client of %2").arg(what, path); });
}
} // namespace

class VtServer::Private : public QObject
{
public:
    Private(values::Tree &tree, const MirrorTiming &timing);
    ~Private() override;

    void beginNew();
    void receive(quint64 number, const std::string &batch);
    void resynchronise(quint64 session);
    void end(quint64 session);
    void endSilent();
    void flushAll();

    /// Shared with the call that it is in, since observers may end it.
    struct Session {
        const std::shared_ptr<SessionLine> line;
        const std::shared_ptr<MirrorSession> mirror;
        bool isApplying = false;
        bool isEnding = false; ///< when all that has come is applied
        std::deque<std::string> later{}; ///< batches that have come since, by an event loop that an observer runs
    };

    values::Tree &tree;
    const MirrorTiming timing;
    const std::shared_ptr<mirror::SessionGate> gate;
    std::map<quint64, std::shared_ptr<Session>> sessions;
    QTimer watch;
    bool flushPosted = false;
    PortableServer::ObjectId_var servantId;
    bool serving = false;

private:
    void activate();
    void begin(quint64 session, const std::shared_ptr<SessionLine> &line);
    bool apply(Session &session, const std::string &batch);
    void wantFlush();
    void flushWithRoom(SessionLine &line);

    std::shared_ptr<mirror::ISessionKeeper> keeper;
};

namespace
{
/// Takes what ORB threads ask to the main thread.
template <typename Server> class PostingKeeper : public mirror::ISessionKeeper
{
public:
    explicit PostingKeeper(Server *server) : server(server) {}

    void beginNew() override
    {
        // Sessions that come and go while the main thread is busy leave nothing here.
        if (!isAsked->exchange(true))
            post([isAsked = isAsked](Server &server) {
                *isAsked = false;
                server.beginNew();
            });
    }
    void receive(quint64 session, std::string batch) override
    {
        post([session, batch = std::move(batch)](Server &server) { server.receive(session, batch); });
    }
    void resynchronise(quint64 session) override
    {
        post([session](Server &server) { server.resynchronise(session); });
    }
    void flush() override
    {
        post([](Server &server) { server.flushAll(); });
    }
    void end(quint64 session) override
    {
        post([session](Server &server) { server.end(session); });
    }

private:
    template <typename Call> void post(Call call)
    {
        door->post(ThreadingHelper::RunInMainThreadEvent(
            [server = server, call = std::move(call)] {
                if (server)
                    call(*server);
            }));
    }

    const std::shared_ptr<std::atomic<bool>> isAsked = std::make_shared<std::atomic<bool>>(false); // to begin sessions
    const QPointer<Server> server; // looked at on the main thread alone
    const std::shared_ptr<ThreadingHelper::ThreadSwitchingHandler> door =
        ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QLatin1String(sourceName));
};
} // namespace

VtServer::Private::Private(values::Tree &tree, const MirrorTiming &timing)
    : tree(tree), timing(timing), gate(std::make_shared<mirror::SessionGate>(timing))
{
    connect(&watch, &QTimer::timeout, this, [this] {
        gate->beat();
        endSilent();
    });
    watch.start(timing.watchInterval());
    activate();
}

VtServer::Private::~Private()
{
    gate->close();
    const CorbaCommon::OrbHandler &orb = CorbaCommon::OrbHandler::Instance();
    if (!serving || !orb.isRunning())
        return;
    try {
        orb.keyedPoa()->deactivate_object(servantId);
    } catch (const CORBA::Exception &) {
        // The ORB is ending, and all servants with it.
    }
}

void VtServer::Private::activate()
{
    const CorbaCommon::OrbHandler &orb = CorbaCommon::OrbHandler::Instance();
    const auto fail = [](const char *reason) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("The tree is not offered: %1").arg(QLatin1String(reason)); });
    };
    if (!orb.isRunning())
        return fail("the ORB does not run");
    keeper = std::make_shared<PostingKeeper<Private>>(this);
    const PortableServer::ServantBase_var servant = new mirror::TreeServant(timing, gate, keeper);
    servantId = PortableServer::string_to_ObjectId(key);
    try {
        orb.keyedPoa()->activate_object_with_id(servantId, servant.in());
        serving = true;
    } catch (const CORBA::Exception &e) {
        fail(e._name());
    }
}

void VtServer::Private::beginNew()
{
    for (const auto &[session, line] : gate->takeNew())
        begin(session, line);
}

void VtServer::Private::begin(quint64 session, const std::shared_ptr<SessionLine> &line)
{
    const mirror::Outlet outlet{
        .put = [line](quint64 sequence, std::string bytes) { line->outbox.put(sequence, std::move(bytes)); },
        .waiting = [line] { return line->outbox.waiting(); },
        .wantsFlush =
            [server = QPointer<Private>(this)] {
                if (server) // or an observer has ended it
                    server->wantFlush();
            }};
    const auto mirror = std::make_shared<MirrorSession>(tree, line->path, timing, outlet);
    sessions[session] = std::make_shared<Session>(Session{.line = line, .mirror = mirror});
    traceSession(QStringLiteral("Begins"), line->path);
}

void VtServer::Private::receive(quint64 number, const std::string &batch)
{
    const auto found = sessions.find(number);
    if (found == sessions.end())
        return gate->release(mirror::countedBytes(batch.size()));
    const std::shared_ptr<Session> session = found->second;
    if (session->isApplying)
        return session->later.push_back(batch);
    const QPointer<Private> guard(this);
    session->isApplying = true;
    bool goesOn = apply(*session, batch);
    while (guard && goesOn && !session->later.empty()) {
        const std::string next = std::move(session->later.front());
        session->later.pop_front();
        goesOn = apply(*session, next);
    }
    session->isApplying = false;
    if (guard && (!goesOn || session->isEnding))
        end(number);
}

/// False when the session has to end: the client has broken the rules. Observers may delete this.
bool VtServer::Private::apply(Session &session, const std::string &batch)
{
    const std::size_t counted = mirror::countedBytes(batch.size());
    gate->release(counted);
    session.line->bytesToApply -= counted;
    try {
        return session.mirror->receive(batch);
    } catch (const std::exception &e) { // of memory, say: what the client had said here is lost
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("A client's session ends: %1").arg(QString::fromUtf8(e.what())); });
        return false;
    }
}

void VtServer::Private::resynchronise(quint64 session)
{
    const auto found = sessions.find(session);
    if (found == sessions.end())
        return;
    traceSession(QStringLiteral("Is told everything again"), found->second->line->path);
    found->second->line->snapshotAsked = false;
    found->second->mirror->startOver();
    found->second->line->outbox.clear();
}

void VtServer::Private::end(quint64 session)
{
    gate->remove(session);
    const auto found = sessions.find(session);
    if (found == sessions.end())
        return;
    if (found->second->isApplying) {
        found->second->isEnding = true;
        return;
    }
    traceSession(QStringLiteral("Ends"), found->second->line->path);
    for (const std::string &batch : found->second->later)
        gate->release(mirror::countedBytes(batch.size()));
    found->second->later.clear();
    sessions.erase(found);
}

void VtServer::Private::endSilent()
{
    std::vector<quint64> silent;
    for (const auto &[number, session] : sessions)
        if (session->line->heartbeat.isLost())
            silent.push_back(number);
    for (const quint64 number : silent)
        end(number);
}

void VtServer::Private::wantFlush()
{
    if (std::exchange(flushPosted, true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { flushAll(); }, Qt::QueuedConnection);
}

void VtServer::Private::flushAll()
{
    flushPosted = false;
    for (const auto &[number, session] : sessions)
        if (!session->mirror->flush())
            flushWithRoom(*session->line);
}

void VtServer::Private::flushWithRoom(SessionLine &line)
{
    line.outbox.whenBelow(timing.windowBytes / 2, [keeper = keeper] { keeper->flush(); });
}

VtServer::VtServer() : VtServer(values::Tree::Instance())
{
}

VtServer::VtServer(values::Tree &tree, const MirrorTiming &timing) : d(std::make_unique<Private>(tree, timing))
{
}

VtServer::~VtServer() = default;

bool VtServer::isServing() const
{
    return d->serving;
}

int VtServer::sessionCount() const
{
    return static_cast<int>(d->sessions.size());
}

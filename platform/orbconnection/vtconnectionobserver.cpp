#include "orbconnection/vtconnectionobserver.h"

#include "appruntime/threadswitchingadministration.h"
#include "coresupport/trace.h"
#include "orbconnection/corbaloc.h"
#include "orbconnection/hostaddress.h"
#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorlink.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"
#include "valuetreelib/vtclientcenter.h"

#include <QPointer>
#include <QTimer>

using mirror::LinkSession;
using mirror::MirrorClient;
using mirror::MirrorLink;

namespace
{
constexpr char sourceName[] = "orbconnection/vtconnectionobserver";

/// What the tree's holders see of a connection.
class VtClient : public IVtClient
{
public:
    explicit VtClient(const QString &path) : path(path) { VtClientCenter::Instance().addClient(this); }
    ~VtClient() override { VtClientCenter::Instance().removeClient(this); }
    QString clientPath() const override { return path; }
    void setOptimized(values::ValueBase *value, bool on) override
    {
        if (value)
            value->setOptimized(on);
    }

private:
    const QString path;
};
} // namespace

class VtConnectionObserver::Private : public QObject, public IObserver
{
public:
    Private(VtConnectionObserver *observer, const QString &serverPath, const QString &clientPath,
            const VtConnectData &address, const QString &reregisterPath, const MirrorTiming &timing);
    ~Private() override;

    /// Somebody has set the re-register value.
    void Update(Observable *, TChangeCode code) override;
    QString reregisterValuePath() const { return client->clientPath() + u'/' + reregisterPath; }

    VtConnectionObserver *const observer;
    const VtConnectData address;
    const QString reregisterPath;
    values::Tree &tree = values::Tree::Instance();
    const std::size_t windowBytes;
    const std::shared_ptr<MirrorClient> client; // shared with the calls that it is in, since observers may delete this
    VtClient vtClient;
    std::shared_ptr<MirrorLink> link;
    std::shared_ptr<LinkSession> session; // null while there is none
    bool connected = false;
    bool deletesClientPath = false;
    bool flushPosted = false;

private:
    mirror::Outlet outlet();
    /// Returns a function that other threads may call: it makes a call of theirs to this on the main thread.
    auto poster();
    MirrorLink::Events events();
    void begin(const std::shared_ptr<LinkSession> &newSession);
    void receive(const std::shared_ptr<LinkSession> &from, const std::string &batch);
    void end(const std::shared_ptr<LinkSession> &ended);
    void lose();
    void askForSnapshot();
    void leaveServer(const char *reason);
    void observeReregisterValue();
    void wantFlush();
    void flush();

    QTimer snapshotPatience; // runs while a snapshot is awaited
    bool snapshotAsked = false;
};

VtConnectionObserver::Private::Private(VtConnectionObserver *observer, const QString &serverPath,
                                       const QString &clientPath, const VtConnectData &address,
                                       const QString &reregisterPath, const MirrorTiming &timing)
    : observer(observer), address(address), reregisterPath(reregisterPath),
      windowBytes(timing.windowBytes),
      client(std::make_shared<MirrorClient>(tree, clientPath, reregisterPath, timing, outlet())), vtClient(client->clientPath())
{
    const QString host = address.ipAddress.isEmpty() ? address.hostName : address.ipAddress;
    const QString where = QStringLiteral("The tree server at %1:%2").arg(host, QString::number(address.port));
    link = std::make_shared<MirrorLink>(CorbaCommon::corbaloc(host, address.port, "ValueTree"), where, serverPath,
                                        timing, events());
    observeReregisterValue();
    snapshotPatience.setSingleShot(true);
    snapshotPatience.setInterval(timing.snapshotPatience);
    connect(&snapshotPatience, &QTimer::timeout, this, [this] { leaveServer("no snapshot is completed"); });
    link->start();
}

VtConnectionObserver::Private::~Private()
{
    link->stop();
    if (!reregisterPath.isEmpty())
        if (values::ValueBase *const value = tree.findValue(reregisterValuePath()))
            value->DeleteObserver(this);
    session.reset();
    lose();
    client->detach();
}

mirror::Outlet VtConnectionObserver::Private::outlet()
{
    return {.put =
                [this](quint64 sequence, std::string bytes) {
                    if (session)
                        session->outbox.put(sequence, std::move(bytes));
                },
            .waiting = [this] { return session ? session->outbox.waiting() : 0; },
            .wantsFlush = [this] { wantFlush(); }};
}

auto VtConnectionObserver::Private::poster()
{
    const auto door =
        ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QLatin1String(sourceName));
    const QPointer<Private> self(this); // looked at on the main thread alone
    return [door, self](auto call) {
        door->post(ThreadingHelper::RunInMainThreadEvent([self, call = std::move(call)] {
            if (self)
                call(*self);
        }));
    };
}

MirrorLink::Events VtConnectionObserver::Private::events()
{
    const auto post = poster();
    return {[post](const auto &session) { post([session](Private &d) { d.begin(session); }); },
            [post](const auto &session, std::string batch) {
                post([session, batch = std::move(batch)](Private &d) { d.receive(session, batch); });
            },
            [post](const auto &session) { post([session](Private &d) { d.end(session); }); }};
}

void VtConnectionObserver::Private::Update(Observable *, TChangeCode code)
{
    if (code != ChangeCodeValue)
        return;
    // So that it can be set again.
    if (auto *const wish = dynamic_cast<values::Value<bool> *>(tree.findValue(reregisterValuePath())))
        wish->SetValue(false, this);
    if (!session)
        return;
    traceAt(TraceLevel::Normal, sourceName,
            [this] { return QStringLiteral("%1 is to connect again").arg(client->clientPath()); });
    session->outbox.close();
}

void VtConnectionObserver::Private::begin(const std::shared_ptr<LinkSession> &newSession)
{
    session = newSession;
    snapshotAsked = false;
    snapshotPatience.start();
    client->begin();
    observeReregisterValue();
}

void VtConnectionObserver::Private::receive(const std::shared_ptr<LinkSession> &from, const std::string &batch)
{
    from->bytesToApply -= mirror::countedBytes(batch.size());
    if (from != session)
        return; // of a session that has ended
    const QPointer<Private> guard(this);
    const std::shared_ptr<MirrorClient> receiver = client;
    const MirrorClient::Outcome outcome = receiver->receive(batch);
    if (!guard || (from != session && outcome != MirrorClient::Outcome::Missing))
        return;
    switch (outcome) {
    case MirrorClient::Outcome::Repeated:
        return;
    case MirrorClient::Outcome::Applied:
        snapshotAsked = false;
        return receiver->isSettled() ? snapshotPatience.stop() : snapshotPatience.start();
    case MirrorClient::Outcome::Missing:
        return askForSnapshot(); // also in a session that has begun meanwhile
    case MirrorClient::Outcome::Malformed:
        return leaveServer("its batch cannot be applied");
    case MirrorClient::Outcome::SnapshotComplete:
        snapshotAsked = false;
        snapshotPatience.stop();
        connected = true;
        session->isComplete = true;
        Q_EMIT observer->si_connected(receiver->clientPath());
    }
}

void VtConnectionObserver::Private::end(const std::shared_ptr<LinkSession> &ended)
{
    if (ended != session)
        return;
    session.reset();
    snapshotPatience.stop();
    const QPointer<Private> guard(this);
    lose();
    if (guard && std::exchange(connected, false))
        Q_EMIT observer->si_disconnected(client->clientPath());
}

void VtConnectionObserver::Private::lose()
{
    const std::shared_ptr<MirrorClient> loser = client;
    const bool deletes = deletesClientPath;
    loser->lose();
    if (deletes)
        loser->removeAll();
}

void VtConnectionObserver::Private::askForSnapshot()
{
    // Once: what is on its way to here is missed as well.
    if (!session || std::exchange(snapshotAsked, true))
        return;
    session->wantsSnapshot = true;
    snapshotPatience.start();
}

void VtConnectionObserver::Private::leaveServer(const char *reason)
{
    const std::shared_ptr<LinkSession> left = session;
    if (!left)
        return;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 is to connect again: %2").arg(client->clientPath(), QLatin1String(reason));
    });
    left->outbox.close();
    end(left); // at once, since more batches may be on their way to here
}

void VtConnectionObserver::Private::observeReregisterValue()
{
    if (reregisterPath.isEmpty())
        return;
    const QString path = reregisterValuePath();
    if (!tree.findValue(path)) {
        auto value = std::make_unique<values::Value<bool>>();
        value->SetName(path.mid(path.lastIndexOf(u'/') + 1), this);
        tree.addValue(path.left(path.lastIndexOf(u'/')), std::move(value), this);
    }
    if (values::ValueBase *const value = tree.findValue(path))
        value->AddObserver(this);
}

void VtConnectionObserver::Private::wantFlush()
{
    if (std::exchange(flushPosted, true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { flush(); }, Qt::QueuedConnection);
}

void VtConnectionObserver::Private::flush()
{
    flushPosted = false;
    if (!client->flush() && session)
        session->outbox.whenBelow(windowBytes / 2,
                                  [post = poster()] { post([](Private &d) { d.wantFlush(); }); });
}

VtConnectionObserver::VtConnectionObserver(const QString &serverPath, const QString &clientPath,
                                           const VtConnectData &address, const QString &reregisterPath)
    : VtConnectionObserver(serverPath, clientPath, address, reregisterPath, MirrorTiming())
{
}

VtConnectionObserver::VtConnectionObserver(const QString &serverPath, const QString &clientPath,
                                           const VtConnectData &address, const QString &reregisterPath,
                                           const MirrorTiming &timing)
    : d(std::make_unique<Private>(this, serverPath, clientPath, address, reregisterPath, timing))
{
}

VtConnectionObserver::~VtConnectionObserver()
{
    Q_EMIT si_clientTerminating();
}

void VtConnectionObserver::setDeleteClientTicPath(bool on)
{
    d->deletesClientPath = on;
}

IVtClient *VtConnectionObserver::vtClient() const
{
    return &d->vtClient;
}

const VtConnectData &VtConnectionObserver::connData() const
{
    return d->address;
}

QString VtConnectionObserver::getBaseClientPath() const
{
    return d->client->clientPath();
}

bool VtConnectionObserver::isConnected() const
{
    return d->connected;
}

bool VtConnectionObserver::GetFirstIPAddressOfHostNameStatic(const QString &hostName, QString &ip, bool preferIPv4)
{
    return firstAddressOfHost(hostName, ip, preferIPv4);
}

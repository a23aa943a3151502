#include "orbconnection/mirrorlink.h"

#include "coresupport/trace.h"
#include "orbconnection/backgroundthreads.h"
#include "orbconnection/mirrorwire.h"
#include "orbconnection/orbhandler.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorlink";
constexpr std::chrono::milliseconds shortPause{20};
} // namespace

MirrorLink::MirrorLink(const QString &reference, const QString &where, const QString &serverPath,
                       const MirrorTiming &timing, Events events)
    : reference(reference), where(where), serverPath(serverPath), timing(timing), events(std::move(events))
{
}

void MirrorLink::start()
{
    CorbaCommon::runInBackground([self = shared_from_this()] { self->run(); });
}

void MirrorLink::stop()
{
    const std::lock_guard lock(mutex);
    stopped = true;
    if (current)
        current->outbox.close();
    stopping.notify_all();
}

void MirrorLink::run()
{
    std::size_t failures = 0;
    for (;;) {
        if (const std::shared_ptr<LinkSession> session = open()) {
            const bool begun = attempt([&] {
                events.begun(session);
                CorbaCommon::runInBackground([self = shared_from_this(), session] { self->push(session); });
            });
            if (begun)
                carry(session);
            session->outbox.close();
            attempt([&] { events.ended(session); });
            if (session->isComplete)
                failures = 0;
        }
        pause(failures++);
        const std::lock_guard lock(mutex);
        if (stopped || CorbaCommon::isBackgroundEnding())
            return;
    }
}

void MirrorLink::pause(std::size_t failures)
{
    std::unique_lock lock(mutex);
    stopping.wait_for(lock, timing.backOff[std::min(failures, timing.backOff.size() - 1)], [this] { return stopped; });
}

std::shared_ptr<LinkSession> MirrorLink::open()
{
    const auto session = std::make_shared<LinkSession>(timing);
    const bool opened = succeeds([&] {
        const CorbaCommon::OrbHandler &orb = CorbaCommon::OrbHandler::Instance();
        if (!orb.isRunning())
            throw CORBA::BAD_INV_ORDER(0, CORBA::COMPLETED_NO);
        const CORBA::Object_var object = orb.orb()->string_to_object(reference.toLatin1().constData());
        session->server = VALUETREE::TreeServer::_unchecked_narrow(object);
        omniORB::setClientCallTimeout(session->server, static_cast<CORBA::ULong>(timing.silenceUntilLost().count()));
        session->number = session->server->open(serverPath.toUtf8().constData(), protocolVersion);
    });
    const std::lock_guard lock(mutex);
    if (!opened || stopped)
        return nullptr;
    current = session;
    return session;
}

void MirrorLink::carry(const std::shared_ptr<LinkSession> &session)
{
    quint64 received = 0;
    std::string batch;
    while (!session->outbox.isClosed() && !CorbaCommon::isBackgroundEnding()) {
        if (!succeeds([&] { carryOne(session, received, batch); }))
            return;
    }
}

void MirrorLink::carryOne(const std::shared_ptr<LinkSession> &session, quint64 &received, std::string &batch)
{
    try {
        if (session->wantsSnapshot.exchange(false))
            session->server->resynchronise(session->number);
        if (pullOne(*session, received, batch))
            events.received(session, std::move(batch));
    } catch (const VALUETREE::SessionUnknown &) {
        if (!session->outbox.isClosed()) // else it was this side that has ended it
            throw;
    }
}

bool MirrorLink::pullOne(LinkSession &session, quint64 &received, std::string &batch)
{
    const bool hasRoom = session.bytesToApply < timing.queueBytes;
    const auto begin = std::chrono::steady_clock::now();
    const VALUETREE::Delivery_var delivery = session.server->pull(session.number, received, hasRoom);
    const bool isEmpty = delivery->number == 0;
    // Without room the main thread is busy, and this was only a sign of life; else a server waits before it has nothing.
    if (!hasRoom || (isEmpty && std::chrono::steady_clock::now() - begin < shortPause))
        pauseShortly();
    if (isEmpty)
        return false;
    if (delivery->bytes.length() < batchHeaderBytes || delivery->bytes.length() > timing.maximumBatchBytes)
        throw CORBA::MARSHAL(0, CORBA::COMPLETED_YES);
    received = delivery->number;
    batch.assign(reinterpret_cast<const char *>(delivery->bytes.get_buffer()), delivery->bytes.length());
    session.bytesToApply += countedBytes(batch.size());
    return true;
}

void MirrorLink::push(const std::shared_ptr<LinkSession> &session)
{
    const auto tell = [this](const char *reason) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 does not take changes: %2").arg(where, QString::fromUtf8(reason));
        });
    };
    try {
        pushAll(*session);
    } catch (const CORBA::Exception &e) {
        tell(e._name());
    } catch (const std::exception &e) {
        tell(e.what());
    }
    session->outbox.close();
    try {
        session->server->close(session->number); // ends the pull as well
    } catch (const CORBA::Exception &) {
        // Then the pull fails by itself.
    }
}

void MirrorLink::pushAll(LinkSession &session)
{
    quint64 sent = 0;
    while (!session.outbox.isClosed() && !CorbaCommon::isBackgroundEnding()) {
        const Outbox::Entry entry = session.outbox.next(sent, timing.heartbeat);
        if (entry.sequence == 0)
            continue;
        // Without a copy: the sequence only looks at the bytes.
        auto *const bytes = reinterpret_cast<CORBA::Octet *>(const_cast<char *>(entry.bytes->data()));
        const auto size = static_cast<CORBA::ULong>(entry.bytes->size());
        if (session.server->push(session.number, entry.sequence, VALUETREE::Batch(size, size, bytes, false))) {
            sent = entry.sequence;
            continue;
        }
        pauseShortly();
    }
}

void MirrorLink::pauseShortly()
{
    std::unique_lock lock(mutex);
    stopping.wait_for(lock, shortPause, [this] { return stopped; });
}

template <typename Call> bool MirrorLink::succeeds(const Call &call)
{
    const bool done = attempt(call);
    if (done)
        note(QString());
    return done;
}

template <typename Call> bool MirrorLink::attempt(const Call &call)
{
    try {
        call();
        return true;
    } catch (const VALUETREE::VersionNotSupported &e) {
        note(QStringLiteral("speaks version %1 of the mirror, this is version %2")
                 .arg(QString::number(e.supported), QString::number(protocolVersion)));
    } catch (const VALUETREE::SessionUnknown &) {
        note(QStringLiteral("has ended the session"));
    } catch (const CORBA::Exception &e) {
        note(QStringLiteral("does not answer as a tree server: %1").arg(QLatin1String(e._name())));
    } catch (const std::exception &e) { // such as of too little memory
        note(QStringLiteral("is left: %1").arg(QString::fromUtf8(e.what())));
    }
    return false;
}

void MirrorLink::note(const QString &newTrouble)
{
    if (newTrouble == trouble)
        return;
    trouble = newTrouble;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 %2").arg(where, trouble.isEmpty() ? QStringLiteral("answers") : trouble);
    });
}
} // namespace mirror

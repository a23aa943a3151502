#include "orbconnection/treeservant.h"

#include "coresupport/trace.h"
#include "orbconnection/incomingconnections.h"
#include "orbconnection/mirrorwire.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/treeservant";
constexpr std::size_t maximumPathBytes = 4096;
} // namespace

TreeServant::TreeServant(const MirrorTiming &timing, std::shared_ptr<SessionGate> gate,
                         std::shared_ptr<ISessionKeeper> keeper)
    : timing(timing), gate(std::move(gate)), keeper(std::move(keeper))
{
}

CORBA::ULongLong TreeServant::open(const char *path, CORBA::ULong version)
{
    if (version != protocolVersion) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("A client speaks version %1 of the mirror, this is version %2")
                .arg(QString::number(version), QString::number(protocolVersion));
        });
        throw VALUETREE::VersionNotSupported(protocolVersion);
    }
    if (qstrlen(path) > maximumPathBytes)
        throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
    refuseWhileMainThreadIsLost();
    const quint64 session = gate->open(QString::fromUtf8(path), CorbaCommon::callerAddress());
    if (session == 0)
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    keeper->beginNew();
    return session;
}

VALUETREE::Delivery *TreeServant::pull(CORBA::ULongLong session, CORBA::ULongLong received, CORBA::Boolean room)
{
    const std::shared_ptr<SessionLine> line = lineOf(session);
    line->heartbeat.beat();
    const Outbox::Entry entry = line->outbox.next(received, room ? timing.heartbeat : std::chrono::milliseconds(0));
    if (line->outbox.isClosed())
        throw VALUETREE::SessionUnknown();
    refuseWhileMainThreadIsLost();
    VALUETREE::Delivery_var delivery = new VALUETREE::Delivery;
    delivery->number = 0;
    if (room && entry.sequence != 0) {
        delivery->number = entry.sequence;
        delivery->bytes.length(static_cast<CORBA::ULong>(entry.bytes->size()));
        std::copy(entry.bytes->begin(), entry.bytes->end(), delivery->bytes.get_buffer());
    }
    return delivery._retn();
}

CORBA::Boolean TreeServant::push(CORBA::ULongLong session, CORBA::ULongLong, const VALUETREE::Batch &bytes)
{
    const std::shared_ptr<SessionLine> line = lineOf(session);
    if (bytes.length() < batchHeaderBytes || bytes.length() > timing.maximumBatchBytes) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("A client's batch is refused: it has %1 bytes").arg(bytes.length()); });
        close(session);
        throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
    }
    const std::size_t counted = countedBytes(bytes.length());
    if (line->bytesToApply > timing.queueBytes || !gate->admit(counted))
        return false;
    line->bytesToApply += counted;
    keeper->receive(session, std::string(reinterpret_cast<const char *>(bytes.get_buffer()), bytes.length()));
    return true;
}

void TreeServant::resynchronise(CORBA::ULongLong session)
{
    if (!lineOf(session)->snapshotAsked.exchange(true))
        keeper->resynchronise(session);
}

void TreeServant::close(CORBA::ULongLong session)
{
    if (gate->remove(session))
        keeper->end(session);
}

void TreeServant::refuseWhileMainThreadIsLost() const
{
    if (gate->isMainThreadLost())
        throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO);
}

std::shared_ptr<SessionLine> TreeServant::lineOf(quint64 session) const
{
    if (std::shared_ptr<SessionLine> line = gate->line(session))
        return line;
    throw VALUETREE::SessionUnknown();
}
} // namespace mirror

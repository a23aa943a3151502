#include "tests/support/rudetreeserver.h"

#include "orbconnection/mirrorwire.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/valuetree.hh"
#include "valuetreelib/value.h"

#include <condition_variable>
#include <mutex>

using namespace mirror;
using namespace std::chrono_literals;

namespace
{
constexpr unsigned otherVersion = 7;
constexpr char key[] = "ValueTree";

std::string batch(quint64 number, const std::vector<Record> &records)
{
    std::string bytes;
    appendHeader(bytes, number);
    for (const Record &record : records)
        appendRecord(bytes, record);
    return bytes;
}

/// The content and state of the one value. Values are the main thread's.
std::string honestFrames()
{
    values::Value<QString> state;
    state.SetValue(QStringLiteral("honest"), nullptr);
    std::string frames;
    state.AddObjectStateStringForTransmission(frames);
    return frames;
}

std::string hugeLength(quint64 number)
{
    return batch(number, {{.kind = RecordKind::SnapshotBegin}}) + "\x04\xff\xff\xff\xff State";
}
} // namespace

/// What the server does, whatever becomes of its servant.
class RudeTreeServer::Conduct
{
public:
    explicit Conduct(Manner manner) : manner(manner) {}

    CORBA::ULongLong open()
    {
        std::unique_lock lock(mutex);
        opened.push_back(Clock::now());
        if (manner == Manner::OtherVersion)
            throw VALUETREE::VersionNotSupported(otherVersion);
        changed.wait(lock, [this] { return manner != Manner::HangsInOpen; });
        return opened.size();
    }
    VALUETREE::Delivery *pull(CORBA::ULongLong received, bool room)
    {
        VALUETREE::Delivery_var delivery = new VALUETREE::Delivery;
        std::unique_lock lock(mutex);
        ++pulls;
        pullsWithoutRoom += !room;
        changed.wait(lock, [this] { return manner != Manner::Hangs; });
        delivery->number = received + 1;
        const std::string bytes = bytesOf(delivery->number);
        snapshotIsDue = false;
        delivery->bytes.length(static_cast<CORBA::ULong>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), delivery->bytes.get_buffer());
        if (isSilent(delivery->number)) {
            delivery->number = 0;
            if (manner != Manner::SaysNothing)
                changed.wait_for(lock, 50ms);
        }
        return delivery._retn();
    }
    void resynchronise()
    {
        const std::lock_guard lock(mutex);
        ++resynchronisations;
        snapshotIsDue = true;
    }

    std::mutex mutex; // guards all below
    std::condition_variable changed;
    Manner manner;
    std::vector<Clock::time_point> opened;
    int pulls = 0;
    int pullsWithoutRoom = 0;
    bool snapshotIsDue = true;
    int resynchronisations = 0;

private:
    bool isSilent(quint64 number) const
    {
        return manner == Manner::SaysNothing
               || (number > 1 && (manner == Manner::Honest || manner == Manner::NeverCompletes));
    }
    std::string bytesOf(quint64 number) const;
    std::string wholeSnapshot(quint64 number) const;

    const std::string frames = honestFrames();
};

std::string RudeTreeServer::Conduct::wholeSnapshot(quint64 number) const
{
    return batch(number, {{.kind = RecordKind::SnapshotBegin},
                          {.kind = RecordKind::Path},
                          {.kind = RecordKind::Node, .number = 1},
                          {.kind = RecordKind::Path, .path = "State"},
                          {.kind = RecordKind::Value, .number = 2, .type = values::ValueTypeText, .frames = frames},
                          {.kind = RecordKind::SnapshotEnd}});
}

std::string RudeTreeServer::Conduct::bytesOf(quint64 number) const
{
    switch (manner) {
    case Manner::EndsSessions:
        throw VALUETREE::SessionUnknown();
    case Manner::NeverCompletes:
        return batch(number, {{.kind = RecordKind::SnapshotBegin}});
    case Manner::SaysNothing:
    case Manner::EmptyBatches:
        return {};
    case Manner::BatchTooLong:
        return wholeSnapshot(number) + std::string(tooManyBytes, '\2');
    case Manner::SkipsNumbers:
        return number == 1 ? wholeSnapshot(number) : batch(2 * number, {{.kind = RecordKind::Node, .number = 1}});
    case Manner::LosesBatches:
        return snapshotIsDue ? wholeSnapshot(2 * number) : batch(2 * number, {{.kind = RecordKind::Node, .number = 1}});
    case Manner::Malformed:
        return number == 1 ? wholeSnapshot(number) : batch(number, {}) + '\xee';
    case Manner::HugeLength:
        return hugeLength(number);
    case Manner::Honest:
    case Manner::OtherVersion:
    case Manner::Hangs:
    case Manner::HangsInOpen:
        break;
    }
    return wholeSnapshot(number);
}

/// The ORB's, which ends it when the last call has ended.
class RudeTreeServer::Servant : public POA_VALUETREE::TreeServer
{
public:
    explicit Servant(std::shared_ptr<Conduct> conduct) : conduct(std::move(conduct)) {}

    CORBA::ULongLong open(const char *, CORBA::ULong) override { return conduct->open(); }
    VALUETREE::Delivery *pull(CORBA::ULongLong, CORBA::ULongLong received, CORBA::Boolean room) override
    {
        return conduct->pull(received, room);
    }
    CORBA::Boolean push(CORBA::ULongLong, CORBA::ULongLong, const VALUETREE::Batch &) override { return true; }
    void resynchronise(CORBA::ULongLong) override { conduct->resynchronise(); }
    void close(CORBA::ULongLong) override {}

private:
    const std::shared_ptr<Conduct> conduct;
};

RudeTreeServer::RudeTreeServer(Manner manner) : conduct(std::make_shared<Conduct>(manner))
{
    const PortableServer::ServantBase_var servant = new Servant(conduct);
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key);
    CorbaCommon::OrbHandler::Instance().keyedPoa()->activate_object_with_id(id, servant.in());
}

RudeTreeServer::~RudeTreeServer()
{
    behave(Manner::EndsSessions);
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key);
    CorbaCommon::OrbHandler::Instance().keyedPoa()->deactivate_object(id);
}

void RudeTreeServer::behave(Manner manner)
{
    const std::lock_guard lock(conduct->mutex);
    conduct->manner = manner;
    conduct->changed.notify_all();
}

std::vector<RudeTreeServer::Clock::time_point> RudeTreeServer::opened() const
{
    const std::lock_guard lock(conduct->mutex);
    return conduct->opened;
}

int RudeTreeServer::pullCount() const
{
    const std::lock_guard lock(conduct->mutex);
    return conduct->pulls;
}

int RudeTreeServer::pullCountWithoutRoom() const
{
    const std::lock_guard lock(conduct->mutex);
    return conduct->pullsWithoutRoom;
}

int RudeTreeServer::resynchronisationCount() const
{
    const std::lock_guard lock(conduct->mutex);
    return conduct->resynchronisations;
}

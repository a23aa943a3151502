#include "tests/installation/manager/sessionrecorder.h"

#include "tests/installation/cco/testorb.h"
#include "tests/installation/manager/emptycontrol.h"

using installation::Activation;

class SessionRecorder::Control : public EmptyControl
{
public:
    Control(std::string key, std::shared_ptr<Trouble> trouble) : key(std::move(key)), trouble(std::move(trouble)) {}

    std::shared_ptr<FakeRecord> add(const std::string &recordId)
    {
        const std::scoped_lock lock(mutex);
        return records[recordId] = std::make_shared<FakeRecord>(recordId);
    }
    std::shared_ptr<FakeRecord> record(const std::string &recordId)
    {
        const std::scoped_lock lock(mutex);
        const auto found = records.find(recordId);
        return found == records.end() ? nullptr : found->second;
    }
    void refuseConnections() { connects = false; }
    void endSessions()
    {
        const std::scoped_lock lock(mutex);
        sessions.clear();
    }

    TQ_KORVE::struMETA_DATA *getMetaData(Text recordId) override
    {
        trouble->meet("getMetaData");
        const auto found = known(recordId);
        TQ_KORVE::struMETA_DATA_var data = new TQ_KORVE::struMETA_DATA();
        const std::scoped_lock lock(found->mutex);
        data->recordID = CORBA::string_dup(recordId);
        data->size = data->stopPosition = found->size;
        data->startTime = 1000000;
        data->stopTime = 3000000;
        data->recordStatus = static_cast<CORBA::ULong>(found->status);
        return data._retn();
    }
    TQ_KORVE::IF_ReplaySession_ptr getReplaySessionByIdEx(Text recordId, Receiver receiver, Rate) override
    {
        return getReplaySessionById(recordId, receiver);
    }
    TQ_KORVE::IF_ReplaySession_ptr getReplaySessionById(Text recordId, Receiver) override
    {
        trouble->meet("getReplaySessionById");
        const auto found = known(recordId);
        found->become(TQ_KORVE::rsREADY_FOR_REPLAY);
        const CORBA::Object_var object = serve(new FakeReplaySession(found, trouble));
        return TQ_KORVE::IF_ReplaySession::_unchecked_narrow(object);
    }
    TQ_KORVE::IF_RecordingSession_ptr createRecordingSessionEx(Rate rate, Rate, CORBA::ULong loop,
                                                               TQ_KORVE::eDATA_FORMAT format,
                                                               Receiver receiver) override
    {
        return createRecordingSession(rate, loop, format, receiver);
    }
    TQ_KORVE::IF_RecordingSession_ptr createRecordingSession(Rate, CORBA::ULong, TQ_KORVE::eDATA_FORMAT,
                                                             Receiver) override
    {
        trouble->meet("createRecordingSession");
        const auto made = add(key + "-new");
        made->become(TQ_KORVE::rsREADY_FOR_RECORDING);
        made->connectionId = connects ? 9 : 0;
        const CORBA::Object_var object = serve(new FakeRecordingSession(made, trouble));
        return TQ_KORVE::IF_RecordingSession::_unchecked_narrow(object);
    }
    void setRecordComment(Text recordId, const TQ_KORVE::wideText &text) override
    {
        const auto found = known(recordId);
        const std::scoped_lock lock(found->mutex);
        found->name.clear();
        for (CORBA::ULong position = 0; position < text.length(); ++position)
            found->name += static_cast<char>(text[position]);
    }
    void addHistory(Text recordId, const TQ_KORVE::wideText &text) override
    {
        const auto found = known(recordId);
        const std::scoped_lock lock(found->mutex);
        for (CORBA::ULong position = 0; position < text.length(); ++position)
            found->history += static_cast<char>(text[position]);
    }
    void setRecordIdle(Text recordId) override
    {
        trouble->meet("setRecordIdle");
        known(recordId)->become(TQ_KORVE::rsIDLE);
    }

private:
    std::shared_ptr<FakeRecord> known(const std::string &recordId)
    {
        const auto found = record(recordId);
        if (!found)
            throw TQ_KORVE::exKorve(TQ_KORVE::ekINVALID_RECORD_ID, "there is no such record");
        return found;
    }
    CORBA::Object_ptr serve(PortableServer::Servant servant)
    {
        const std::scoped_lock lock(mutex);
        const std::string name = key + "/session" + std::to_string(++sessionCount);
        return sessions.emplace_back(TestOrb::instance().insPoa(), name, servant).reference();
    }

    const std::string key;
    const std::shared_ptr<Trouble> trouble;
    std::mutex mutex; // guards the rest
    std::map<std::string, std::shared_ptr<FakeRecord>> records;
    std::list<Activation> sessions;
    int sessionCount = 0;
    std::atomic<bool> connects = true;
};

SessionRecorder::SessionRecorder(const std::string &key)
    : control(new Control(key, trouble)),
      activation(std::make_unique<Activation>(TestOrb::instance().insPoa(), key, control))
{
    control->_add_ref(); // the activation has taken over the first reference
}

SessionRecorder::~SessionRecorder()
{
    vanish();
    control->_remove_ref();
}

TQ_KORVE::IF_Control_ptr SessionRecorder::reference() const
{
    const CORBA::Object_var object = activation->reference();
    return TQ_KORVE::IF_Control::_unchecked_narrow(object);
}

void SessionRecorder::vanish()
{
    activation.reset();
    control->endSessions();
}

std::shared_ptr<FakeRecord> SessionRecorder::add(const std::string &recordId)
{
    return control->add(recordId);
}

std::shared_ptr<FakeRecord> SessionRecorder::record(const std::string &recordId) const
{
    return control->record(recordId);
}

void SessionRecorder::refuseConnections()
{
    control->refuseConnections();
}

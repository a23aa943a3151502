#pragma once

#include "tests/installation/manager/trouble.h"

#include "idl/korve.hh"

#include <QtGlobal>

#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

/// One record of a fake recorder. Its samples are its positions, one byte each.
struct FakeRecord {
    explicit FakeRecord(std::string id) : id(std::move(id)) {}

    const std::string id;
    std::mutex mutex; // guards the rest
    TQ_KORVE::eRECORD_STATUS status = TQ_KORVE::rsIDLE;
    std::string name;
    quint64 size = 1000000;
    std::string comment;
    std::string history;
    CORBA::ULong connectionId = 9; ///< of a recording; 0: none comes about

    TQ_KORVE::eRECORD_STATUS statusNow()
    {
        const std::scoped_lock lock(mutex);
        return status;
    }
    void become(TQ_KORVE::eRECORD_STATUS next)
    {
        const std::scoped_lock lock(mutex);
        status = next;
    }
};

/// Stands for an interface with its skeleton.
template <typename Interface, typename Skeleton, typename Dispatcher> struct Served {
    using Base = Skeleton;
    static bool is(const char *repositoryId) { return std::strcmp(repositoryId, Interface::_PD_repoId) == 0; }
    static void *in(Dispatcher *servant) { return servant; }
};

using LinkBase =
    Served<LLDCmodule::LLDC_Interface_Base, POA_LLDCmodule::LLDC_Interface_Base, LLDCmodule::_impl_LLDC_Interface_Base>;

/// One object for an interface of a device and one of a link.
template <typename First, typename Second> class TwoInterfaces : public virtual First::Base, public virtual Second::Base
{
public:
    CORBA::Boolean _dispatch(omniCallHandle &handle) override
    {
        return First::Base::_dispatch(handle) || Second::Base::_dispatch(handle);
    }
    void *_ptrToInterface(const char *repositoryId) override
    {
        if (First::is(repositoryId))
            return First::in(this);
        if (Second::is(repositoryId))
            return Second::in(this);
        return LinkBase::is(repositoryId) ? LinkBase::in(this) : nullptr;
    }
    const char *_mostDerivedRepoId() override { return CORBA::Object::_PD_repoId; }
};

using ServedReplay =
    TwoInterfaces<Served<TQ_KORVE::IF_ReplaySession, POA_TQ_KORVE::IF_ReplaySession, TQ_KORVE::_impl_IF_ReplaySession>,
                  Served<LLDCmodule::LLDC_Interface_Transmitter, POA_LLDCmodule::LLDC_Interface_Transmitter,
                         LLDCmodule::_impl_LLDC_Interface_Transmitter>>;
using ServedRecording = TwoInterfaces<
    Served<TQ_KORVE::IF_RecordingSession, POA_TQ_KORVE::IF_RecordingSession, TQ_KORVE::_impl_IF_RecordingSession>,
    Served<LLDCmodule::LLDC_Interface_Receiver, POA_LLDCmodule::LLDC_Interface_Receiver,
           LLDCmodule::_impl_LLDC_Interface_Receiver>>;

/// Sends a section by TCP, in pieces; goes idle at its end.
class FakeReplaySession : public ServedReplay
{
public:
    FakeReplaySession(std::shared_ptr<FakeRecord> record, std::shared_ptr<Trouble> trouble);
    ~FakeReplaySession() override;

    void setReplayBegin(CORBA::ULongLong position) override;
    void setReplayEnd(CORBA::ULongLong position) override;
    CORBA::ULong setNoOfReplays(CORBA::ULong count) override;
    CORBA::ULongLong getCurrentFilePosition() override;
    void setCurrentFilePosition(CORBA::ULongLong position) override;
    void endReplaySession() override;
    void setConvertHostToNetByteOrder(CORBA::Boolean) override {}
    TQ_KORVE::struRECORD_DETAILS getReplayInformation() override { return {}; }
    TQ_KORVE::eDATARATE_CLASS getDatarateClass() override { return TQ_KORVE::drHF_20k; }

    void endConnection(CORBA::ULong) override;
    LLDCmodule::seqIfDescription *getIfUsed() override { return new LLDCmodule::seqIfDescription; }
    LLDCmodule::seqIfDescription *getIfAvailable() override { return new LLDCmodule::seqIfDescription; }
    LLDCmodule::struConnectionParams waitForConnectionOnIf(const LLDCmodule::struConnectionParams &params,
                                                           CORBA::ULong rate) override;
    void startDataTransfer(CORBA::ULong) override;
    void stopDataTransfer(CORBA::ULong) override;

private:
    void finish();
    void run();
    bool sendPiece();

    const std::shared_ptr<FakeRecord> record;
    const std::shared_ptr<Trouble> trouble;
    std::mutex mutex; // guards the rest
    std::condition_variable changed;
    quint64 begin = 0;
    quint64 end = 0;
    quint64 position = 0;
    quint32 left = 1;
    bool forEver = false;
    bool playing = false;
    bool over = false;
    int socket = -1;
    std::thread thread;
};

/// Takes nothing; is a recording as long as nobody ends it.
class FakeRecordingSession : public ServedRecording
{
public:
    FakeRecordingSession(std::shared_ptr<FakeRecord> record, std::shared_ptr<Trouble> trouble)
        : record(std::move(record)), trouble(std::move(trouble))
    {
    }
    static constexpr CORBA::ULong listeningPort = 4711;

    char *getId() override
    {
        trouble->meet("getId");
        return CORBA::string_dup(record->id.c_str());
    }
    void endRecordingSession(const TQ_KORVE::wideText &comment) override;
    void setConvertNetToHostByteOrder(CORBA::Boolean) override {}
    CORBA::UShort getNetworkSourcePort() override { return listeningPort; }
    CORBA::ULong setupNetworkServer(CORBA::ULong) override { return listeningPort; }
    CORBA::ULong setupNetworkServerEx(CORBA::ULong, CORBA::ULong, CORBA::UShort) override;
    char *setupNetworkTqXg(const char *, CORBA::ULong, CORBA::ULong) override { return CORBA::string_dup(""); }
    char *setupNetworkTqXgEx(const char *, CORBA::ULong, CORBA::ULong) override { return CORBA::string_dup(""); }

    void endConnection(CORBA::ULong) override {}
    LLDCmodule::seqIfDescription *getIfUsed() override { return new LLDCmodule::seqIfDescription; }
    LLDCmodule::seqIfDescription *getIfAvailable() override { return new LLDCmodule::seqIfDescription; }
    CORBA::ULong connectToIf(const LLDCmodule::struConnectionParams &params, CORBA::ULong rate) override;

private:
    const std::shared_ptr<FakeRecord> record;
    const std::shared_ptr<Trouble> trouble;
};

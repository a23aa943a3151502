#pragma once

#include "idl/korvemanager.hh"

#include <functional>
#include <string>
#include <vector>

/// What a manager's command interfaces have in common: they write down what they are asked, with the arguments in the
/// order in which they came, and answer what they are told to.
struct FakeCommands {
    std::vector<std::string> calls;
    /// Runs in every operation, and may throw.
    std::function<void()> trouble = [] {};
    CORBA::ULong number = 0;

protected:
    CORBA::ULong answer(const std::string &call)
    {
        calls.push_back(call);
        trouble();
        return number;
    }
};

/// The administration of records. Wide texts are written down unit by unit where they leave ASCII.
class FakeAdmin : public POA_TQ_KRV::IF_KORVE_Admin, public FakeCommands
{
public:
    TQ_KRV::struRECORD_DATA record{};
    CORBA::ULongLong deviceTime = 0;

    CORBA::ULong removeHistoryEntry(const char *deviceId, const char *recordId, CORBA::ULongLong timestamp) override;
    CORBA::ULong addHistory(const char *deviceId, const char *recordId, const CORBA::WChar *text) override;
    CORBA::ULong copyRecord(const char *deviceId, const char *recordId, const TQ_KRV::seqCopySection &sections,
                            const CORBA::WChar *name, CORBA::String_out newRecordId) override;
    CORBA::ULong setRecordComment(const char *deviceId, const char *recordId, const CORBA::WChar *comment) override;
    CORBA::ULong setRecordDeletableFlag(const char *deviceId, const char *recordId, CORBA::Boolean deletable) override;
    void addBookmarks(const char *deviceId, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks) override;
    void deleteBookmarks(const char *deviceId, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks) override;
    CORBA::ULong getDeviceTime(const char *deviceId, CORBA::ULongLong &time, CORBA::Boolean &synchronized) override;
    CORBA::ULong setDeviceTime(const char *deviceId, CORBA::ULongLong time) override;
    CORBA::ULong getOverviewSpectrumStreamed(const char *deviceId, const char *recordId, CORBA::ULongLong startPosition,
                                             CORBA::ULongLong stopPosition, CORBA::ULongLong lineCount,
                                             CORBA::ULong fftSize, TQ_KRV::eFFT_WINDOWING_MODES window,
                                             const char *ipAddress, CORBA::UShort port) override;
    CORBA::ULong getRecord(const char *deviceId, const char *recordId, TQ_KRV::struRECORD_DATA_out found) override;
    CORBA::ULong requestRecordDataDetail(const char *deviceId, const char *recordId) override;
    CORBA::Boolean deleteRecord(const char *deviceId, const char *recordId) override;
};

/// Replay control.
class FakeReplay : public POA_TQ_KRV::IF_KORVE_Replay, public FakeCommands
{
public:
    CORBA::ULong StartReplay(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                             CORBA::ULongLong start, CORBA::ULongLong stop, CORBA::ULong count) override;
    CORBA::ULong StartReplayReceivers(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                                      CORBA::ULongLong start, CORBA::ULongLong stop, CORBA::ULong count,
                                      TQ_KRV::interfaceTypeEnum interfaceType) override;
    CORBA::ULong PauseReplay(const char *deviceId, const char *recordId) override;
    CORBA::ULong ContinueReplay(const char *deviceId, const char *recordId) override;
    CORBA::ULong StopReplay(const char *deviceId, const char *recordId) override;
};

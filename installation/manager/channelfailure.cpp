#include "installation/manager/channelfailure.h"

#include <algorithm>
#include <array>

namespace installation
{

namespace
{

using TQ_KORVE::eKorveKind;
using TQ_KRV::IF_KRV_c_Chan;
using TQ_KRV::IF_KRV_c_ChanMan;
using enum ChannelCommand;

template <typename Kind> struct Meaning {
    ChannelCommand command;
    Kind kind;
    quint32 number;
};

/// Kinds without a line count from 10000.
constexpr std::array deviceMeanings{
    Meaning<eKorveKind>{StartReplay, TQ_KORVE::ekINVALID_RECORD_ID, failure::unknownRecord},
    Meaning<eKorveKind>{StartReplay, TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE, failure::wrongState},
    Meaning<eKorveKind>{StartReplay, TQ_KORVE::ekRESSOURCES_EXHAUSTED, failure::resources},
    Meaning<eKorveKind>{PauseReplay, TQ_KORVE::ekINVALID_RECORD_ID, failure::nothingToPause},
    Meaning<eKorveKind>{PauseReplay, TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE, failure::nothingToPause},
    Meaning<eKorveKind>{ContinueReplay, TQ_KORVE::ekINVALID_RECORD_ID, failure::nothingToContinue},
    Meaning<eKorveKind>{ContinueReplay, TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE, failure::nothingToContinue},
    Meaning<eKorveKind>{StopReplay, TQ_KORVE::ekINVALID_RECORD_ID, failure::notReplaying},
    Meaning<eKorveKind>{StartRecording, TQ_KORVE::ekRESSOURCES_EXHAUSTED, failure::noCapacity},
    Meaning<eKorveKind>{StartRecording, TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE, failure::noCapacity},
    Meaning<eKorveKind>{StartRecording, TQ_KORVE::ekSTORAGE_SUBSYSTEM_FULL, failure::noCapacity},
    Meaning<eKorveKind>{StartRecording, TQ_KORVE::ekSESSION_CREATION_FAILED, failure::noSession},
    Meaning<eKorveKind>{StartRecording, TQ_KORVE::ekRECORD_CREATION_FAILED, failure::noSession},
};

/// Kinds without a line count from 900.
constexpr std::array linkMeanings{
    Meaning<LLDCmodule::eLLDCKind>{PauseReplay, LLDCmodule::ekWrongSequence, failure::nothingToPause},
    Meaning<LLDCmodule::eLLDCKind>{ContinueReplay, LLDCmodule::ekConnFailed, failure::nothingToContinue},
    Meaning<LLDCmodule::eLLDCKind>{ContinueReplay, LLDCmodule::ekDataStreamUnavailable, failure::nothingToContinue},
    Meaning<LLDCmodule::eLLDCKind>{ContinueReplay, LLDCmodule::ekIfError, failure::nothingToContinue},
    Meaning<LLDCmodule::eLLDCKind>{ContinueReplay, LLDCmodule::ekUnknown, failure::nothingToContinue},
};

/// A session that is not there any more, by what was wanted of it.
constexpr std::array goneMeanings{
    std::pair{PauseReplay, failure::nothingToPause},
    std::pair{ContinueReplay, failure::nothingToContinue},
};

constexpr std::array chanKinds{
    std::pair{failure::channelNotActive, IF_KRV_c_Chan::Channel_Is_Not_Active},
    std::pair{failure::noCapacity, IF_KRV_c_Chan::No_Capacity_On_Korve},
    std::pair{failure::invalidDevice, IF_KRV_c_Chan::Invalid_DeviceId},
    std::pair{failure::noDevice, IF_KRV_c_Chan::Invalid_DeviceId},
    std::pair{failure::outOfRange, IF_KRV_c_Chan::Range_Error},
    std::pair{failure::resources, IF_KRV_c_Chan::No_Capacity_On_Korve},
};

template <typename Table, typename Kind>
quint32 numberFor(const Table &table, ChannelCommand command, Kind kind, quint32 otherwise)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const Meaning<Kind> &meaning) {
        return meaning.command == command && meaning.kind == kind;
    });
    return found == table.end() ? otherwise : found->number;
}

template <typename Table, typename Key, typename Value>
Value lookUp(const Table &table, const Key &key, const Value &otherwise)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const auto &line) { return line.first == key; });
    return found == table.end() ? otherwise : found->second;
}

quint32 numberForSilence(ChannelCommand command, const CORBA::SystemException &error)
{
    const quint32 unreachable = command == StartRecording ? failure::noDevice : failure::notConnected;
    const bool isGone = CORBA::OBJECT_NOT_EXIST::_downcast(&error);
    return isGone ? lookUp(goneMeanings, command, unreachable) : unreachable;
}

} // namespace

void askRecorder(ChannelCommand command, const std::function<void()> &calls)
{
    try {
        calls();
    } catch (const TQ_KORVE::exKorve &refusal) {
        const quint32 own = 10000 + static_cast<quint32>(refusal.kind);
        throw ChannelFailure(numberFor(deviceMeanings, command, refusal.kind, own), QString::fromUtf8(refusal.text));
    } catch (const LLDCmodule::exLLDC &refusal) {
        const quint32 own = 900 + static_cast<quint32>(refusal.kind);
        throw ChannelFailure(numberFor(linkMeanings, command, refusal.kind, own), QString::fromUtf8(refusal.text));
    } catch (const CORBA::SystemException &error) {
        throw ChannelFailure(numberForSilence(command, error),
                             QStringLiteral("the recorder does not answer: %1").arg(QLatin1String(error._name())));
    }
}

void orderRecorder(ChannelCommand command, const std::function<void()> &calls)
{
    bool mayBeDone = false;
    try {
        askRecorder(command, [&] {
            try {
                calls();
            } catch (const CORBA::SystemException &error) {
                mayBeDone = error.completed() != CORBA::COMPLETED_NO;
                throw;
            }
        });
    } catch (const ChannelFailure &failure) {
        if (!mayBeDone)
            throw;
        throw ChannelFailure(failure.number(), failure.text(), ChannelFailure::Outcome::Unknown);
    }
}

void askChannelManager(const std::function<void()> &calls)
{
    try {
        calls();
    } catch (const IF_KRV_c_ChanMan::exChanMan &refusal) {
        throw ChannelFailure(750 + static_cast<quint32>(refusal.kind), QString::fromUtf8(refusal.text));
    } catch (const CORBA::SystemException &error) {
        throw ChannelFailure(
            failure::channelManagerGone,
            QStringLiteral("the channel manager does not answer: %1").arg(QLatin1String(error._name())));
    }
}

IF_KRV_c_Chan::eChanKind kindOf(quint32 number)
{
    return lookUp(chanKinds, number, IF_KRV_c_Chan::Channel_Is_Not_Active);
}

} // namespace installation

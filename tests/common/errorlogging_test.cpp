#include "common/errorlogging.h"

#include "tests/appruntime/capturedtraces.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <gmock/gmock.h>

#include <functional>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

using Call = std::function<unsigned long()>;

const TQ_KORVE::exKorve exists(TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS, "at 5");
const TQ_KRV::IF_KRV_c_Chan::exChan busy(TQ_KRV::IF_KRV_c_Chan::Channel_Is_Replaying, "R1");
const TQ_KRV::IF_KORVE_Admin::exAdmin noRecord(TQ_KRV::IF_KORVE_Admin::Invalid_RecordId, "R1");
const CORBA::TRANSIENT unreachable;
const CORBA::COMM_FAILURE broken;

// Nothing of this may be taken for a place to fill.
constexpr auto op = "Start%2";
constexpr auto device = "dev%1";
constexpr auto record = "rec%4%3";

/// One operation, and what it answers and traces.
struct Failure {
    const char *name;
    Call call;
    unsigned long number;
    const char *trace;
};

void PrintTo(const Failure &failure, std::ostream *out)
{
    *out << failure.name;
}

class Loggers : public testing::TestWithParam<Failure>
{
};

TEST_P(Loggers, TraceTheFailureAndAnswerItsNumber)
{
    CapturedTraces traces(32);
    EXPECT_EQ(GetParam().call(), GetParam().number);
    EXPECT_THAT(traces.texts(), ElementsAre(GetParam().trace));
    EXPECT_EQ(traces.sourceOf(GetParam().trace), "common/errorlogging");
}

TEST_P(Loggers, AnswerTheSameNumberWhenNothingIsTraced)
{
    CapturedTraces traces(static_cast<unsigned>(TraceLevel::Debug));
    EXPECT_EQ(GetParam().call(), GetParam().number);
    EXPECT_THAT(traces.texts(), IsEmpty());
}

const KorveDevice::ErrorLogging deviceLog;
const KorveChannel::ErrorLogging channelLog;
const KorveAdmin::ErrorLogging adminLog;

std::string rowName(const testing::TestParamInfo<Failure> &row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    OfDevice, Loggers,
    testing::Values(Failure{"UserExceptionOfRecord", [] { return deviceLog.userException(exists, op, device, record); },
                            10034,
                            "Start%2 for Device/Record dev%1/rec%4%3 failed with exception: "
                            "User exception: TQ_KORVE::exKorve::ekBOOKMARK_ALREADY_EXISTS: at 5"},
                    Failure{"UserException", [] { return deviceLog.userException(exists, op, device); }, 10034,
                            "Start%2 for Device dev%1 failed with exception: "
                            "User exception: TQ_KORVE::exKorve::ekBOOKMARK_ALREADY_EXISTS: at 5"},
                    Failure{"UserExceptionOfChannel", [] { return deviceLog.userExceptionChannel(busy, op, device); },
                            212, "Start%2 for Channel 'dev%1' failed with exception: User exception: undefined"},
                    Failure{"SystemExceptionOfRecord",
                            [] { return deviceLog.systemException(unreachable, op, device, record); }, 210,
                            "Start%2 for Device/Record dev%1/rec%4%3 failed with exception: TRANSIENT"},
                    Failure{"SystemException", [] { return deviceLog.systemException(broken, op, device); }, 211,
                            "Start%2 for Device dev%1 failed with exception: COMM_FAILURE"},
                    Failure{"UnspecifiedOfRecord", [] { return deviceLog.unspecifiedError(op, device, record); }, 7000,
                            "Start%2 for Device/Record 'dev%1'/'rec%4%3' failed"},
                    Failure{"Unspecified", [] { return deviceLog.unspecifiedError(op, device); }, 7000,
                            "Start%2 for Device'dev%1' failed"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    OfChannel, Loggers,
    testing::Values(Failure{"UserException", [] { return channelLog.userException(busy, op, "c"); }, 801,
                            "Start%2 for Channel 'c' failed with exception: "
                            "User exception: TQ_KRV::IF_KRV_c_Chan::exChan::Channel_Is_Replaying: R1"},
                    Failure{"TransientException", [] { return channelLog.systemException(unreachable, op, "c"); }, 210,
                            "Start%2 for Channel 'c' failed with exception: TRANSIENT"},
                    Failure{"SystemException", [] { return channelLog.systemException(broken, op, "c"); }, 211,
                            "Start%2 for Channel 'c' failed with exception: COMM_FAILURE"},
                    Failure{"Unspecified", [] { return channelLog.unspecifiedError(op, "c"); }, 7000,
                            "Start%2 for Channel 'c' failed"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    OfAdmin, Loggers,
    testing::Values(Failure{"ManagersException", [] { return adminLog.userException(noRecord, op, device, record); },
                            501,
                            "Start%2 for Device/Record dev%1/rec%4%3 failed with exception: User exception: undefined"},
                    Failure{"ChannelsException", [] { return adminLog.userException(busy, op, device); }, 801,
                            "Start%2 for Device dev%1 failed with exception: User exception: undefined"},
                    Failure{"DevicesException", [] { return adminLog.userException(exists, op, device); }, 212,
                            "Start%2 for Device dev%1 failed with exception: "
                            "User exception: TQ_KORVE::exKorve::ekBOOKMARK_ALREADY_EXISTS: at 5"},
                    Failure{"SystemExceptionOfRecord",
                            [] { return adminLog.systemException(broken, op, device, record); }, 211,
                            "Start%2 for Device/Record dev%1/rec%4%3 failed with exception: COMM_FAILURE"},
                    Failure{"SystemException", [] { return adminLog.systemException(unreachable, op, device); }, 210,
                            "Start%2 for Device dev%1 failed with exception: TRANSIENT"},
                    Failure{"UnspecifiedOfRecord", [] { return adminLog.unspecifiedError(op, device, record); }, 7000,
                            "Start%2 for Device/Record 'dev%1'/'rec%4%3' failed"},
                    Failure{"Unspecified", [] { return adminLog.unspecifiedError(op, device); }, 7000,
                            "Start%2 for Device'dev%1' failed"}),
    rowName);

} // namespace

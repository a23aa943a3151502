#include "connectionmanagement/managercall.h"

#include "idl/korve.hh"
#include "tests/connectionmanagement/owntraces.h"

#include <gmock/gmock.h>

#include <cstring>

using namespace KorveGUI;
using testing::ElementsAre;
using testing::IsEmpty;
using TQ_KRV::IF_KRV_c_Chan;
using TQ_KRV::IF_KRV_c_KRV;

namespace
{
const char *const source = "somewhere/caller";
const char *const logger = "common/errorlogging";

const TracedCommand ofRecord{"CopyRecord", QStringLiteral("D1"), QStringLiteral("R%1")};
const TracedCommand ofDevice{"SetDeviceTime", QStringLiteral("D1")};

const TQ_KORVE::exKorve deviceException(TQ_KORVE::ekINVALID_RECORD_ID, "R1");
const IF_KRV_c_Chan::exChan channelException(IF_KRV_c_Chan::Range_Error, "why");
const IF_KRV_c_KRV::exKRV refusal(IF_KRV_c_KRV::Invalid_Address, "no %1");
const CORBA::TRANSIENT transient;
const CORBA::COMM_FAILURE lost;

/// The kind may be none of the enumeration's, so it is put into the exception byte by byte.
IF_KRV_c_KRV::exKRV refusalOf(int kind, const char *text)
{
    IF_KRV_c_KRV::exKRV refused(IF_KRV_c_KRV::Request_Failed, text);
    static_assert(sizeof refused.kind == sizeof kind);
    std::memcpy(&refused.kind, &kind, sizeof kind);
    return refused;
}

RemoteFailure user(const CORBA::UserException &e)
{
    return {.user = &e};
}
RemoteFailure system(const CORBA::SystemException &e)
{
    return {.system = &e};
}

const char *const record = "CopyRecord for Device/Record D1/R%1 failed with exception: ";
const char *const device = "SetDeviceTime for Device D1 failed with exception: ";
const char *const korveText = "User exception: TQ_KORVE::exKorve::ekINVALID_RECORD_ID: R1";
const char *const undefined = "User exception: undefined";

struct Failure {
    const char *name;
    RemoteFailure failure;
    unsigned long number;
    std::string ofRecord, ofDevice;
    const char *kind; ///< how the second line names it
};

void PrintTo(const Failure &failure, std::ostream *out)
{
    *out << failure.name;
}

class ManagerFailure : public testing::TestWithParam<Failure>
{
};

INSTANTIATE_TEST_SUITE_P(
    Failures, ManagerFailure,
    testing::Values(Failure{"OfADevice", user(deviceException), 212, std::string(record) + korveText,
                            std::string(device) + korveText, "CORBA User Exception"},
                    Failure{"OfAChannel", user(channelException), 805, std::string(record) + undefined,
                            std::string(device) + undefined, "CORBA User Exception"},
                    Failure{"NotReached", system(transient), 210, std::string(record) + "TRANSIENT",
                            std::string(device) + "TRANSIENT", "CORBA System Exception"},
                    Failure{"Lost", system(lost), 211, std::string(record) + "COMM_FAILURE",
                            std::string(device) + "COMM_FAILURE", "CORBA System Exception"},
                    Failure{"Other", RemoteFailure{}, 7000, "CopyRecord for Device/Record 'D1'/'R%1' failed",
                            "SetDeviceTime for Device'D1' failed", "CORBA Unspecified Exception"}),
    [](const auto &info) { return info.param.name; });

TEST_P(ManagerFailure, HasANumberAndOneLine)
{
    CapturedTraces traces(32);
    EXPECT_EQ(numberOfFailure(GetParam().failure, ofRecord), GetParam().number);
    EXPECT_EQ(numberOfFailure(GetParam().failure, ofDevice), GetParam().number);
    EXPECT_THAT(take(traces), ElementsAre(GetParam().ofRecord, GetParam().ofDevice));
    EXPECT_EQ(traces.sourceOf(GetParam().ofRecord), logger);
    ErrorHandler::Instance().setTraceMask(0);
    EXPECT_EQ(numberOfFailure(GetParam().failure, ofRecord), GetParam().number);
}

TEST_P(ManagerFailure, IsNamedByItsKindInASecondLineOfTheCaller)
{
    CapturedTraces traces(32);
    traceFailure(GetParam().failure, ofRecord, source);
    EXPECT_THAT(take(traces), ElementsAre(GetParam().ofRecord, GetParam().kind));
    EXPECT_EQ(traces.sourceOf(GetParam().ofRecord), logger);
    EXPECT_EQ(traces.sourceOf(GetParam().kind), source);
    traceManagerFailure(GetParam().failure, ofDevice, QStringLiteral("op"), source); // none of them is a refusal
    EXPECT_THAT(take(traces), ElementsAre(GetParam().ofDevice, GetParam().kind));
}

TEST(ManagerRefusal, IsTracedInItsOwnWordsAlone)
{
    const std::pair<int, const char *> kinds[] = {{0, "Invalid Device ID - "}, {1, "Invalid Address - "},
                                                  {2, "Invalid Record ID - "}, {3, "Request Failed - "},
                                                  {4, "Request Failed - "},    {-1, "Request Failed - "}};
    for (const auto &[kind, words] : kinds) {
        const IF_KRV_c_KRV::exKRV refused = refusalOf(kind, "no %1 \xc3\xa4");
        CapturedTraces traces(32);
        traceManagerFailure(user(refused), ofRecord, QStringLiteral("deviceID(%2)"), source);
        const std::string line = "deviceID(%2): " + std::string(words) + "no %1 \xc3\xa4";
        EXPECT_THAT(take(traces), ElementsAre(line));
        EXPECT_EQ(traces.sourceOf(line), source);
    }
}

TEST(ManagerRefusal, IsAnUnknownUserExceptionToTheLog)
{
    CapturedTraces traces(32);
    EXPECT_EQ(numberOfFailure(user(refusal), ofRecord), 212u);
    traceFailure(user(refusal), ofDevice, source);
    EXPECT_THAT(take(traces),
                ElementsAre(std::string(record) + undefined, std::string(device) + undefined, "CORBA User Exception"));
}

TEST(ManagerRefusal, IsQuietWhereNothingIsTraced)
{
    for (const unsigned mask : {0u, 64u}) {
        CapturedTraces traces(mask);
        traceManagerFailure(user(refusal), ofRecord, QStringLiteral("op"), source);
        traceFailure(system(lost), ofRecord, source);
        EXPECT_THAT(take(traces), IsEmpty());
    }
}

/// What callOr() hands over for @p exception.
template <typename Exception> RemoteFailure handedOver(const Exception &exception, std::string &name)
{
    RemoteFailure kept;
    callOr([&]() -> int { throw exception; },
           [&](const RemoteFailure &failure) {
               kept = failure;
               name = failure.user ? failure.user->_name() : failure.system ? failure.system->_name() : "";
               return 0;
           });
    return kept;
}

TEST(CallOr, TellsTheThreeKindsOfExceptionsApart)
{
    std::string name;
    EXPECT_TRUE(handedOver(deviceException, name).user);
    EXPECT_EQ(name, "exKorve");
    const RemoteFailure ofOrb = handedOver(lost, name);
    EXPECT_TRUE(ofOrb.system && !ofOrb.user);
    EXPECT_EQ(name, "COMM_FAILURE");
    const RemoteFailure other = handedOver(std::runtime_error("x"), name);
    EXPECT_FALSE(other.user || other.system);
    EXPECT_FALSE(handedOver(7, name).system);
}

TEST(CallOr, AnswersWhatTheCallAnswersOrTheFailureMakesOfIt)
{
    int failures = 0;
    const auto onFailure = [&](const RemoteFailure &) { return ++failures + 100; };
    EXPECT_EQ(callOr([] { return 5; }, onFailure), 5);
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(callOr([]() -> int { throw 1; }, onFailure), 101);
}
} // namespace

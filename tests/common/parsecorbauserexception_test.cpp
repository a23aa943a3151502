#include "common/parsecorbauserexception.h"

#include "idl/cco.hh"
#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "tests/appruntime/capturedtraces.h"
#include "tests/common/exceptionkinds.h"

#include <gmock/gmock.h>

#include <map>

namespace
{
using ChannelParser = KorveChannel::ParseCorbaUserException;
using DeviceParser = KorveDevice::ParseCorbaUserException;

const char *const freeText = "no such r\xc3\xa4 %1 %2 @/";

class UserException : public testing::TestWithParam<ExceptionCase>
{
protected:
    /// Compares both decoders' answers for @p kind with what is expected.
    static void expectAsTyped(long kind, const char *text)
    {
        const auto thrown = GetParam().make(kind, text);
        const QString words = QString::fromUtf8(text);
        EXPECT_EQ(DeviceParser::convertException(*thrown), GetParam().number(Family::Device, kind)) << kind;
        EXPECT_EQ(ChannelParser::convertException(*thrown), GetParam().number(Family::Channel, kind)) << kind;
        EXPECT_EQ(DeviceParser::GetException(*thrown).toStdString(),
                  GetParam().text(Family::Device, kind, words).toStdString());
        EXPECT_EQ(ChannelParser::GetException(*thrown).toStdString(),
                  GetParam().text(Family::Channel, kind, words).toStdString());
    }
};

INSTANTIATE_TEST_SUITE_P(Exceptions, UserException, testing::ValuesIn(knownExceptions()),
                         [](const auto &info) { return info.param.name; });

TEST_P(UserException, HasTheNumberAndTheTextOfItsKind)
{
    for (const ExceptionKind &row : GetParam().kinds())
        expectAsTyped(row.kind, freeText);
}

TEST_P(UserException, IsUndefinedWithAKindThatDoesNotExist)
{
    const long known = GetParam().kinds().size();
    for (long kind = known; kind <= 300; ++kind)
        expectAsTyped(kind, "why");
    expectAsTyped(-1, "why");
    expectAsTyped(0x7fffffff, "why");
}

TEST_P(UserException, KeepsItsFreeTextToTheLetter)
{
    expectAsTyped(0, "\xf0\x9f\x93\xa1");
    expectAsTyped(0, "");
    expectAsTyped(0, std::string(10000, 'x').c_str());
}

TEST_P(UserException, IsDecodedWithoutATrace)
{
    const CapturedTraces traces;
    expectAsTyped(0, "why");
    EXPECT_THAT(traces.texts(), testing::IsEmpty());
}

TEST(UserExceptions, AreAllThatTheErrorNumbersCount)
{
    std::map<std::string, int> sizes;
    for (const ExceptionCase &exception : knownExceptions())
        sizes[exception.name] = exception.kinds().size();
    EXPECT_EQ(sizes,
              (std::map<std::string, int>{
                  {"exadmin", 1}, {"exchan", 6}, {"exchanman", 9}, {"exgen", 5}, {"exkorve", 35}, {"exlldc", 8}}));
}

TEST(UserExceptions, ReadAsTheyAreWritten)
{
    using namespace TQ_KRV;
    EXPECT_EQ(ChannelParser::GetException(exGen(Invalid_Interface, "a")).toStdString(),
              "User exception: TQ_KRV::exGen::Invalid_Interface: a");
    EXPECT_EQ(ChannelParser::GetException(IF_KRV_c_Chan::exChan(IF_KRV_c_Chan::Channel_Is_Recording, "")).toStdString(),
              "User exception: TQ_KRV::IF_KRV_c_Chan::exChan::Channel_Is_Recording: ");
    EXPECT_EQ(DeviceParser::GetException(TQ_KORVE::exKorve(TQ_KORVE::ekRESSOURCES_EXHAUSTED, "b")).toStdString(),
              "User exception: TQ_KORVE::exKorve::ekRESSOURCES_EXHAUSTED: b");
    const TQ_KORVE::exKorve unknown(static_cast<TQ_KORVE::eKorveKind>(35), "c");
    EXPECT_EQ(DeviceParser::GetException(unknown).toStdString(),
              "User exception: undefined TQ_KORVE:exKorve exception");
    EXPECT_EQ(DeviceParser::convertException(unknown), 212u);
}

TEST(UserExceptions, OfOthersAreUndefined)
{
    const TQ_KRV::IF_KRV_c_KRV::exKRV refusal(TQ_KRV::IF_KRV_c_KRV::Invalid_RecordId, "R7");
    const CCO::IF_CCO_c_Naming::InvalidType foreign;
    for (const CORBA::UserException *const thrown :
         {static_cast<const CORBA::UserException *>(&refusal), static_cast<const CORBA::UserException *>(&foreign)}) {
        EXPECT_EQ(ChannelParser::convertException(*thrown), 212u);
        EXPECT_EQ(DeviceParser::convertException(*thrown), 212u);
        EXPECT_EQ(ChannelParser::GetException(*thrown).toStdString(), "User exception: undefined");
        EXPECT_EQ(DeviceParser::GetException(*thrown).toStdString(), "User exception: undefined");
    }
}
} // namespace

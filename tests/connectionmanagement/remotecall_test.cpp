#include "connectionmanagement/remotecall.h"

#include "idl/cco.hh"
#include "idl/korvemanager.hh"

#include <gtest/gtest.h>

#include <omniORB4/Naming.hh>

#include <new>

using Kind = RemoteOutcome::Kind;

namespace
{
TEST(RemoteCall, IsDoneWhenNothingIsThrown)
{
    int made = 0;
    EXPECT_TRUE(remoteCall([&] { ++made; }).isDone());
    EXPECT_EQ(made, 1);
}

TEST(RemoteCall, TellsExceptionsApart)
{
    EXPECT_EQ(remoteCall([] { throw CosNaming::NamingContext::NotFound(); }).kind, Kind::NotRegistered);
    EXPECT_EQ(remoteCall([] { throw CORBA::TRANSIENT(); }).kind, Kind::Transient);
    EXPECT_EQ(remoteCall([] { throw CORBA::COMM_FAILURE(); }).kind, Kind::ConnectionLost);
    EXPECT_EQ(remoteCall([] { throw CORBA::OBJECT_NOT_EXIST(); }).kind, Kind::NotExisting);
    EXPECT_EQ(remoteCall([] { throw CCO::IF_CCO_c_Naming::InvalidType(); }).kind, Kind::Unknown);
    EXPECT_EQ(remoteCall([] { throw 1; }).kind, Kind::Unknown);
}

TEST(RemoteCall, KnowsTheNameOfASystemException)
{
    const RemoteOutcome outcome = remoteCall([] { throw CORBA::NO_PERMISSION(); });
    EXPECT_EQ(outcome.kind, Kind::SystemException);
    EXPECT_EQ(outcome.text, QStringLiteral("NO_PERMISSION"));
    EXPECT_EQ(remoteCall([] { throw CORBA::COMM_FAILURE(); }).text, QStringLiteral("COMM_FAILURE"));
}

TEST(RemoteCall, KeepsWhatTheManagerSays)
{
    const RemoteOutcome outcome = remoteCall(
        [] { throw TQ_KRV::IF_KRV_c_KRV::exKRV(TQ_KRV::IF_KRV_c_KRV::Request_Failed, "no such r\xc3\xa4"); });
    EXPECT_EQ(outcome.kind, Kind::ManagerException);
    EXPECT_EQ(outcome.refusal, 3);
    EXPECT_EQ(outcome.text, QString::fromUtf8("no such r\xc3\xa4"));
}

TEST(RemoteFailure, MayHaveTakenEffectUnlessItIsARefusal)
{
    const auto mayHave = [](const auto &exception) {
        return callOr([&]() -> bool { throw exception; },
                      [](const RemoteFailure &failure) { return failure.mayHaveTakenEffect(); });
    };
    EXPECT_FALSE(mayHave(CCO::IF_CCO_c_Naming::InvalidType()));
    EXPECT_FALSE(mayHave(CORBA::TRANSIENT(0, CORBA::COMPLETED_NO)));
    EXPECT_TRUE(mayHave(CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE)));
    EXPECT_TRUE(mayHave(CORBA::MARSHAL(0, CORBA::COMPLETED_YES)));
    EXPECT_TRUE(mayHave(std::bad_alloc())); // as when the answer was there and could not be kept
}

TEST(RemoteCall, OfANilReferenceIsASystemException)
{
    const CCO::IF_CCO_c_var none = CCO::IF_CCO_c::_nil();
    const RemoteOutcome outcome =
        remoteCall([&] { const CORBA::Object_var object = none->Resolve("A/B", CCO::rtInstallation); });
    EXPECT_EQ(outcome.kind, Kind::SystemException);
    EXPECT_EQ(outcome.text, QStringLiteral("INV_OBJREF"));
}
} // namespace

#include "objectbase/exceptions.h"

#include <gtest/gtest.h>

using namespace REPORTGENERATOR;

namespace
{

template <class Exception> class Failure : public testing::Test
{
};

using Kinds = testing::Types<OutOfRangeException, IncompleteDefinitionException, InvalidXmlException,
                             BinaryParsingException>;
TYPED_TEST_SUITE(Failure, Kinds);

TYPED_TEST(Failure, CarriesKindAndMessageThroughACopy)
{
    const TypeParam original(QString::fromUtf8("größer"));
    const TypeParam copy(original);
    EXPECT_EQ(copy.GetMessage(), QString::fromUtf8("größer"));
    EXPECT_EQ(QString::fromUtf8(copy.what()), copy.GetKind() + QString::fromUtf8(": größer"));
}

TYPED_TEST(Failure, IsCaughtAsItsBases)
{
    EXPECT_THROW(throw TypeParam(QString()), RGException);
    EXPECT_THROW(throw TypeParam(QString()), ReportException);
    EXPECT_THROW(throw TypeParam(QString()), std::exception);
}

TEST(FailureKind, IsTheClassWord)
{
    EXPECT_EQ(RGException(QString()).GetKind(), "RGException");
    EXPECT_EQ(OutOfRangeException(QString()).GetKind(), "OutOfRangeException");
    EXPECT_EQ(IncompleteDefinitionException(QString()).GetKind(), "IncompleteDefinitionException");
    EXPECT_EQ(InvalidXmlException(QString()).GetKind(), "InvalidXmlException");
    EXPECT_EQ(BinaryParsingException(QString()).GetKind(), "BinaryParsingException");
}

} // namespace

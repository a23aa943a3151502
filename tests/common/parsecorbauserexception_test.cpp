#include "common/parsecorbauserexception.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "idl/lumbalandatacom.hh"

#include <gmock/gmock.h>

#include <QFile>
#include <QMap>
#include <QStringList>

#include <memory>

using testing::IsEmpty;
using testing::Not;

namespace
{

using DeviceDecoder = KorveDevice::ParseCorbaUserException;
using ChannelDecoder = KorveChannel::ParseCorbaUserException;
using Raised = std::unique_ptr<CORBA::UserException>;

constexpr auto hostileText = "a '%1' of %2 \u00b5s, \U0001F4FB";

template <class Exception> Raised raise(unsigned kind, const char *text)
{
    return std::make_unique<Exception>(static_cast<decltype(Exception::kind)>(kind), text);
}

/// One type of exception, the decoder that knows it, and what it makes of a kind that the wire does not have.
struct Family {
    const char *enumeration;
    Raised (*raise)(unsigned kind, const char *text);
    QString (*textOf)(const CORBA::UserException &);
    unsigned long (*numberOf)(const CORBA::UserException &) noexcept;
    unsigned long firstNumber;
    const char *scopedName;
    const char *beyond;
};

void PrintTo(const Family &family, std::ostream *out)
{
    *out << family.scopedName;
}

/// The kinds of an enumeration, in wire order.
QStringList kindsOf(const QString &enumeration)
{
    QFile file(EXCEPTION_KINDS);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QMap<QString, QStringList> kinds;
    QString current;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.startsWith(' '))
            kinds[current].append(line.trimmed());
        else
            current = line.section(' ', 1);
    }
    return kinds.value(enumeration);
}

class ExceptionFamilies : public testing::TestWithParam<Family>
{
protected:
    const Family &family = GetParam();
    const QStringList kinds = kindsOf(family.enumeration);
};

TEST_P(ExceptionFamilies, GiveEachKindItsNumber)
{
    ASSERT_THAT(kinds, Not(IsEmpty()));
    for (int kind = 0; kind < kinds.size(); ++kind)
        EXPECT_EQ(family.numberOf(*family.raise(unsigned(kind), "")), family.firstNumber + unsigned(kind));
}

TEST_P(ExceptionFamilies, NameEachKindAndQuoteTheTextAsItIs)
{
    ASSERT_THAT(kinds, Not(IsEmpty()));
    for (int kind = 0; kind < kinds.size(); ++kind)
        EXPECT_EQ(family.textOf(*family.raise(unsigned(kind), hostileText)),
                  QStringLiteral("User exception: ") + family.scopedName + "::" + kinds.at(kind) + ": " + hostileText);
}

TEST_P(ExceptionFamilies, DoNotKnowAKindBeyondTheLast)
{
    for (const unsigned beyond : {unsigned(kinds.size()), 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        const Raised raised = family.raise(beyond, "text");
        EXPECT_EQ(family.numberOf(*raised), 212U);
        EXPECT_EQ(family.textOf(*raised), QStringLiteral("User exception: ") + family.beyond);
    }
}

using Admin = TQ_KRV::IF_KORVE_Admin;
using Chan = TQ_KRV::IF_KRV_c_Chan;
using ChanMan = TQ_KRV::IF_KRV_c_ChanMan;

INSTANTIATE_TEST_SUITE_P(
    , ExceptionFamilies,
    testing::Values(Family{"eKorveKind", raise<TQ_KORVE::exKorve>, DeviceDecoder::GetException,
                           DeviceDecoder::convertException, 10000, "TQ_KORVE::exKorve",
                           "undefined TQ_KORVE:exKorve exception"},
                    Family{"eLLDCKind", raise<LLDCmodule::exLLDC>, DeviceDecoder::GetException,
                           DeviceDecoder::convertException, 900, "LLDCmodule::exLLDC", "undefined"},
                    Family{"eGenKind", raise<TQ_KRV::exGen>, ChannelDecoder::GetException,
                           ChannelDecoder::convertException, 700, "TQ_KRV::exGen", "undefined TQ_KRV:exGen exception"},
                    Family{"eChanManKind", raise<ChanMan::exChanMan>, ChannelDecoder::GetException,
                           ChannelDecoder::convertException, 750, "TQ_KRV::IF_KRV_c_ChanMan::exChanMan",
                           "undefined TQ_KRV::IF_KRV_c_ChanMan::exChanMan exception"},
                    Family{"eChanKind", raise<Chan::exChan>, ChannelDecoder::GetException,
                           ChannelDecoder::convertException, 800, "TQ_KRV::IF_KRV_c_Chan::exChan",
                           "undefined TQ_KRV::IF_KRV_c_Chan::exChan exception"},
                    Family{"eAdminKind", raise<Admin::exAdmin>, ChannelDecoder::GetException,
                           ChannelDecoder::convertException, 501, "TQ_KRV::IF_KORVE_Admin::exAdmin", "undefined"}),
    [](const auto &row) { return std::string(row.param.enumeration); });

TEST(DeviceDecoder, DoesNotKnowTheManagersExceptions)
{
    for (const auto raise : {raise<TQ_KRV::exGen>, raise<Admin::exAdmin>, raise<TQ_KRV::IF_KRV_c_KRV::exKRV>}) {
        EXPECT_EQ(DeviceDecoder::convertException(*raise(0, "text")), 212U);
        EXPECT_EQ(DeviceDecoder::GetException(*raise(0, "text")), "User exception: undefined");
    }
}

TEST(ChannelDecoder, DoesNotKnowTheDevicesExceptionsNorThatOfTheManagersMainInterface)
{
    for (const auto raise : {raise<TQ_KORVE::exKorve>, raise<LLDCmodule::exLLDC>, raise<TQ_KRV::IF_KRV_c_KRV::exKRV>}) {
        EXPECT_EQ(ChannelDecoder::convertException(*raise(0, "text")), 212U);
        EXPECT_EQ(ChannelDecoder::GetException(*raise(0, "text")), "User exception: undefined");
    }
}

} // namespace

#include "korvebase/wiretext.h"

#include <gtest/gtest.h>

namespace
{
namespace wire = KorveCommon::wire;

QString received(const std::wstring &wide)
{
    return wire::text(wide.c_str());
}

std::wstring sent(const QString &text)
{
    const CORBA::WString_var wide = wire::wideText(text);
    return wide.in();
}

TQ_KORVE::wideText unitsOf(std::initializer_list<CORBA::UShort> units)
{
    TQ_KORVE::wideText sequence;
    sequence.length(static_cast<CORBA::ULong>(units.size()));
    std::copy(units.begin(), units.end(), sequence.get_buffer());
    return sequence;
}

TEST(WideText, IsReadAsQtReadsWideCharacters)
{
    for (const wchar_t *wide :
         {L"", L"Aufzeichnung Süd", L"Запись", L"\xD83D\xDCE1 dish", L"\xD83D alone", L"\U0001F4E1 dish",
          L"behind \U0010FFFF", L"\xFEFFmark", L"in\xFEFFside", L"\x110000", L"\xFFFE0000x", L"\xFFFF\xFFFE"})
        EXPECT_EQ(received(wide), QString::fromWCharArray(wide, -1));
}

TEST(WideText, IsReadUnitByUnit)
{
    for (wchar_t unit = 1; unit <= 0xFFFF; ++unit)
        ASSERT_EQ(received({L'x', unit}), QString::fromWCharArray(std::wstring{L'x', unit}.c_str(), -1)) << int(unit);
}

TEST(WideText, IsNeverNull)
{
    EXPECT_FALSE(received(L"").isNull());
    EXPECT_FALSE(wire::text(TQ_KORVE::wideText()).isNull());
    EXPECT_FALSE(wire::identifier("").isNull());
    EXPECT_EQ(sent(QString()), L"");
    const CORBA::String_var noIdentifier = wire::latin1(QString());
    EXPECT_STREQ(noIdentifier, "");
}

TEST(WideText, IsSentUnitByUnit)
{
    EXPECT_EQ(sent("Süd"), L"S\u00FC"
                           L"d");
    const std::wstring dish = sent(QString::fromUtf8("\xF0\x9F\x93\xA1"));
    EXPECT_EQ(dish, (std::wstring{wchar_t(0xD83D), wchar_t(0xDCE1)})) << "a wider character would be refused";
    EXPECT_EQ(received(dish), QString::fromUtf8("\xF0\x9F\x93\xA1"));
}

TEST(WideText, OfADeviceIsItsUnits)
{
    EXPECT_EQ(wire::text(unitsOf({'S', 0xFC, 'd', 0xD83D, 0xDCE1})), QString::fromUtf8("Süd\xF0\x9F\x93\xA1"));
    EXPECT_EQ(wire::text(unitsOf({0xFEFF, 'x'})).size(), 2);
}

TEST(Identifier, IsReadAsUtf8AndSentAsLatin1)
{
    EXPECT_EQ(wire::identifier("S\xC3\xBC"
                               "d"),
              "Süd");
    const CORBA::String_var bytes = wire::latin1(QString::fromUtf8("Süd Запись"));
    EXPECT_STREQ(bytes, "S\xFC"
                        "d ??????");
}
} // namespace

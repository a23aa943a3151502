#include "objectmodel/korve_bite.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <gtest/gtest.h>

using namespace KORVE_XML;
using modeltest::bytes;

namespace
{

struct DateCase {
    const char *name;
    const char *timeSpec; // and what follows it
};

void PrintTo(const DateCase &row, std::ostream *out)
{
    *out << row.name;
}

} // namespace

TEST(DateInEveryForm, KeepsInstantMillisecondsAndTimeSpec)
{
    for (const QDateTime &time : {QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC),
                                  QDateTime(QDate(2020, 2, 29), QTime(1, 2, 3, 4)),
                                  QDateTime(QDate(2020, 2, 29), QTime(1, 2, 3, 40), Qt::OffsetFromUTC, -12600)}) {
        KORVE_Bite bite;
        bite.SetResultState(KORVE_Bite::OK);
        bite.SetTime(time);
        KORVE_Bite fromXml;
        EXPECT_TRUE(fromXml.SetXmlString(bite.GetXmlString(), false));
        KORVE_Bite fromTagged;
        modeltest::readTagged(fromTagged, modeltest::taggedPayload(bite));
        KORVE_Bite fromCompact;
        modeltest::readCompact(fromCompact, modeltest::compactForm(bite));
        for (const KORVE_Bite &back : {fromXml, fromTagged, fromCompact}) {
            EXPECT_EQ(back.GetTime(), time);
            EXPECT_EQ(back.GetTime().timeSpec(), time.timeSpec());
            EXPECT_EQ(back.GetTime().offsetFromUtc(), time.offsetFromUtc());
        }
    }
}

// The zones are a matter of the machine: what one writes another may not know.
class ForeignTimeSpec : public testing::TestWithParam<DateCase>
{
};

TEST_P(ForeignTimeSpec, LeavesADateThatCanBeUsed)
{
    KORVE_Bite bite;
    modeltest::failureOf(
        [&] { modeltest::readCompact(bite, bytes("05 00 000000000025851d 05265437") + bytes(GetParam().timeSpec)); });
    const KORVE_Bite copy(bite);
    EXPECT_TRUE(copy == bite);
    bite.SetValidate(false);
    EXPECT_NE(modeltest::xmlOf(bite), "");
    EXPECT_GT(modeltest::taggedPayload(bite).size(), 8);
    EXPECT_GT(modeltest::compactForm(bite).size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Specs, ForeignTimeSpec,
                         testing::Values(DateCase{"Missing", ""}, DateCase{"Zone", "03 00000006 005500540043"},
                                         DateCase{"NoZone", "03"}, DateCase{"EmptyZone", "03 00000000"},
                                         DateCase{"NullZone", "03 ffffffff"},
                                         DateCase{"UnknownZone", "03 0000000e 004e006f00770068006500720065"},
                                         DateCase{"UnknownSpec", "7f"}, DateCase{"NegativeSpec", "ff"},
                                         DateCase{"NoOffset", "02 0000"}, DateCase{"HugeOffset", "02 7fffffff"},
                                         DateCase{"NegativeOffset", "02 80000000"}),
                         [](const auto &row) { return std::string(row.param.name); });

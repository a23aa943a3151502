#include "objectmodel/admin.h"
#include "objectmodel/channeldata.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/korvetypes.h"
#include "objectmodel/recordcountlimit.h"
#include "objectmodel/requestsparebandwidth.h"
#include "objectmodel/supporteddatarate.h"
#include "tests/support/objectmodel/enumerationaccess.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/schema.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QHash>
#include <QTranslator>

#include <type_traits>

using namespace KORVE_XML;
using modeltest::EnumerationAccess;

namespace
{

using Record = KORVE_RecordData;

// Built before main begins.
const QStringList literalsBeforeMain = Record::GetDataRates();

template <class T> constexpr bool canTranslate = requires
{
    T::tr("text");
    T::trUtf8("text");
};

std::string rowName(const testing::TestParamInfo<modeltest::Enumeration> &row)
{
    return (row.param.className + '_' + row.param.name).toStdString();
}

} // namespace

namespace modeltest
{
void PrintTo(const Enumeration &row, std::ostream *out)
{
    *out << (row.className + "::" + row.name).toStdString();
}
} // namespace modeltest

// How the names of the enumerators follow from the literals.
static_assert(Record::READY_FOR_REPLAY == 0 && Record::ACTIVE == 8 && Record::RAW == 0 && Record::HF_20k == 0);
static_assert(Record::DETECTOR_THRESHOLD == 28 && Record::VUHF_1M == 15);
static_assert(Record::Interface_Unknown == 0 && Record::Interface_10G == 3 && Record::Interface_SigIQ40 == 4);
static_assert(ChannelData::DataRate_HF_20k == 0 && ChannelData::AdditionalDataRate_VUHF_1M == 15);
static_assert(SupportedDataRate::SampleSize_short == 0 && SupportedDataRate::SampleSize_long == 1);
static_assert(Admin::RecordReplayAllModes_Record == 1 && Admin::RecordReplayMode_Record == 3);
static_assert(Admin::ResetMode_Start == 1 && Admin::BiteCmd_Start == 0 && Admin::Replay_Stopping == 5);
static_assert(KorveTypes::poweroff == 2 && RequestSpareBandwidth::SIGIQ40 == 4);

// Numbers of one signed byte that convert to int and may be keys; -1 and 255 are the same value.
static_assert(std::is_same_v<std::underlying_type_t<Record::DataRate>, signed char>);
static_assert(std::is_convertible_v<Record::DataRate, int>);
static_assert(!std::is_same_v<Record::DataRate, ChannelData::DataRate>);
static_assert(static_cast<Record::DataRate>(255) == static_cast<Record::DataRate>(-1));

static_assert(canTranslate<Record> && canTranslate<Admin> && !canTranslate<RecordCountLimit>);

TEST(EnumerationTable, HasAnEntryForEveryAccess)
{
    EXPECT_EQ(modeltest::enumerations().size(), modeltest::enumerationAccess().size());
    EXPECT_EQ(modeltest::enumerations().size(), 49u);
}

class Literals : public testing::TestWithParam<modeltest::Enumeration>
{
protected:
    const EnumerationAccess &access = modeltest::enumerationAccess(GetParam().className, GetParam().name);
    const QStringList &literals = GetParam().literals;
};

TEST_P(Literals, AreListedInOrder)
{
    EXPECT_EQ(access.literals().join('|').toStdString(), literals.join('|').toStdString());
    EXPECT_EQ(access.guiLiterals().join('|').toStdString(), literals.join('|').toStdString());
}

TEST_P(Literals, AreFoundByNumberAndNumbersByLiteral)
{
    for (int number = 0; number < literals.size(); ++number) {
        EXPECT_EQ(access.toName(number).toStdString(), literals.at(number).toStdString());
        EXPECT_EQ(access.fromName(literals.at(number)), number);
    }
}

TEST_P(Literals, AreNullTextsOutsideTheList)
{
    for (const int number : {-128, -1, literals.size(), 127})
        EXPECT_TRUE(access.toName(number).isNull()) << number;
}

TEST_P(Literals, AreFoundOnlyAsTheyAreSpelled)
{
    for (const QString &text : {QString(), QString(""), QString("no such"), literals.first() + ' ',
                                ' ' + literals.last(), literals.first().left(1)})
        EXPECT_EQ(access.fromName(text), -1) << text.toStdString();
    for (const QString &literal : literals)
        for (const QString &other : {literal.toLower(), literal.toUpper()})
            EXPECT_EQ(access.fromName(other), literals.indexOf(other)) << other.toStdString();
}

TEST_P(Literals, StandForTheValidValues)
{
    for (int number = -128; number < 128; ++number)
        EXPECT_EQ(access.isValid(number), number >= 0 && number < literals.size()) << number;
}

INSTANTIATE_TEST_SUITE_P(Of, Literals, testing::ValuesIn(modeltest::enumerations()), rowName);

TEST(LiteralLists, AreReadyBeforeMain)
{
    EXPECT_EQ(literalsBeforeMain.size(), 16);
    EXPECT_EQ(literalsBeforeMain.value(15).toStdString(), "VUHF_1M");
}

TEST(Enumerators, CanBeKeysOfAHash)
{
    QHash<Record::DataRate, int> hash;
    hash[Record::HF_20k] = 1;
    hash[static_cast<Record::DataRate>(255)] = 2;
    EXPECT_EQ(hash.value(static_cast<Record::DataRate>(-1)), 2);
}

TEST(Enumerators, OfTheSameNameHaveTheNumberOfTheirOwnList)
{
    const Admin admin;
    EXPECT_EQ(admin.NameToRecordReplayAllModes("Record"), 1);
    EXPECT_EQ(admin.NameToRecordReplayMode("Record"), 3);
    EXPECT_EQ(Admin::GetRecordReplayAllModess().size(), 5);
    EXPECT_EQ(Admin::GetGUIRecordReplayModes().size(), 6);
    EXPECT_EQ(Admin::GetGUIReplayModes().size(), 6);
}

TEST(InvalidEnumerator, IsRefusedByTheSetterWhateverItsOrigin)
{
    Record record;
    const char *const failure =
        "OutOfRangeException: enum is not valid (classname=KORVE_RecordData,membername=m_dataRate)";
    EXPECT_EQ(modeltest::failureOf([&] { record.SetDataRate(record.NameToDataRate("hf_20k")); }), failure);
    EXPECT_EQ(modeltest::failureOf([&] { record.SetDataRate(static_cast<Record::DataRate>(16)); }), failure);
    EXPECT_EQ(modeltest::failureOf([&] { record.SetDataRate(record.GetInvalidDataRate()); }), failure);
    EXPECT_FALSE(record.IsDataRateSet());
}

/// Knows the literals of one class: in other contexts it translates nothing.
class AdminTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QByteArray(context) == "KORVE_XML::Admin" ? "translated " + QString::fromUtf8(text) : QString();
    }
    bool isEmpty() const override { return false; }
};

class Translation : public testing::Test
{
protected:
    Translation() { EXPECT_TRUE(QCoreApplication::installTranslator(&translator)); }
    ~Translation() override { QCoreApplication::removeTranslator(&translator); }
    AdminTranslator translator;
};

TEST_F(Translation, NeverChangesWhatIsWritten)
{
    EXPECT_EQ(Admin::GetResetModes().first().toStdString(), "Idle");
    EXPECT_EQ(Admin().ResetModeToName(Admin::ResetMode_Idle).toStdString(), "Idle");
    EXPECT_EQ(Admin().NameToResetMode("Idle"), 0);
}

TEST_F(Translation, IsThatOfTheClass)
{
    EXPECT_EQ(Admin::GetGUIResetModes().first().toStdString(), "translated Idle");
    EXPECT_EQ(Record::GetGUIInterfaces().first().toStdString(), "Unknown");
}

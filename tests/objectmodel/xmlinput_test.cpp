#include "objectbase/logger.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_cfgautodeletion.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/massstoragestatus.h"
#include "objectmodel/recordattribute.h"
#include "objectmodel/recordcountlimit.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <QXmlStreamReader>

using namespace KORVE_XML;
using REPORTGENERATOR::Logger;

namespace
{

template <class T> T read(const QString &content, bool validate = true)
{
    T object;
    object.SetValidate(validate);
    const QString name = object.GetObjectName();
    EXPECT_TRUE(object.SetXmlString('<' + name + '>' + content + "</" + name + '>', false));
    return object;
}

KORVE_RecordData recordWithAttribute(const QString &attribute)
{
    KORVE_RecordData record;
    EXPECT_TRUE(record.SetXmlString("<KORVE_RecordData " + attribute + "/>", false));
    return record;
}

} // namespace

TEST(XmlInput, ReadsTheMembersInAnyOrder)
{
    const auto info =
        read<PelinInfo>("<Timestamp>42</Timestamp>\n  <!-- between --><PelinID>P<![CDATA[<1>]]></PelinID>");
    EXPECT_EQ(info.GetPelinID().toStdString(), "P<1>");
    EXPECT_EQ(info.GetTimestamp(), 42u);
}

TEST(XmlInput, TakesADocumentWithADeclaration)
{
    PelinInfo info;
    EXPECT_TRUE(info.SetXmlString(
        "<?xml version='1.0' encoding='UTF-8'?>\n<PelinInfo><PelinID>P</PelinID></PelinInfo>\n", false));
    EXPECT_EQ(info.GetPelinID().toStdString(), "P");
}

TEST(XmlInput, OfAnEmptyElementIsATextThatIsNotNull)
{
    for (const char *content : {"<PelinID/>", "<PelinID></PelinID>"}) {
        const auto info = read<PelinInfo>(content);
        EXPECT_TRUE(info.IsPelinIDSet());
        EXPECT_FALSE(info.GetPelinID().isNull());
        EXPECT_TRUE(info.GetPelinID().isEmpty());
        EXPECT_TRUE(info.HasData());
    }
}

TEST(XmlInput, LeavesAMemberAloneWhoseAttributeIsMissing)
{
    const KORVE_RecordData record = recordWithAttribute("Other='1'");
    EXPECT_FALSE(record.IsFinishedSet());
    EXPECT_TRUE(record.GetFinished());
}

TEST(XmlInput, TakesAnEmptyBooleanAttributeAsItsDefault)
{
    const KORVE_RecordData record = recordWithAttribute("Finished=''");
    EXPECT_TRUE(record.IsFinishedSet());
    EXPECT_TRUE(record.GetFinished());
}

TEST(XmlInput, AcceptsAnAttributeMemberAsAChildElementToo)
{
    EXPECT_FALSE(recordWithAttribute("Finished='FALSE'").GetFinished());
    const auto record = read<KORVE_RecordData>("<Finished>0</Finished>");
    EXPECT_TRUE(record.IsFinishedSet());
    EXPECT_FALSE(record.GetFinished());
}

struct BooleanCase {
    const char *name;
    const char *text;
    bool value;
};

void PrintTo(const BooleanCase &row, std::ostream *out)
{
    *out << '"' << row.text << '"';
}

class BooleanText : public testing::TestWithParam<BooleanCase>
{
};

TEST_P(BooleanText, IsTrueUnlessItSaysFalse)
{
    const auto attribute = read<RecordAttribute>(QStringLiteral("<IsDeletable>%1</IsDeletable>").arg(GetParam().text));
    EXPECT_TRUE(attribute.IsIsDeletableSet());
    EXPECT_EQ(attribute.GetIsDeletable(), GetParam().value);
    EXPECT_EQ(recordWithAttribute(QStringLiteral("Finished='%1'").arg(GetParam().text)).GetFinished(),
              GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Texts, BooleanText,
                         testing::Values(BooleanCase{"False", "false", false}, BooleanCase{"Capitals", "FALSE", false},
                                         BooleanCase{"Zero", "0", false}, BooleanCase{"True", "true", true},
                                         BooleanCase{"One", "1", true}, BooleanCase{"TwoZeros", "00", true},
                                         BooleanCase{"No", "no", true}, BooleanCase{"NotTrimmed", " false", true}),
                         [](const auto &row) { return std::string(row.param.name); });

struct NumberCase {
    const char *name;
    const char *text;
    quint64 wide;   // as quint64
    quint32 narrow; // as quint32
};

void PrintTo(const NumberCase &row, std::ostream *out)
{
    *out << '"' << row.text << '"';
}

class NumberText : public testing::TestWithParam<NumberCase>
{
};

TEST_P(NumberText, IsConvertedAsASignedNumber)
{
    const auto info = read<PelinInfo>(QStringLiteral("<Timestamp>%1</Timestamp>").arg(GetParam().text));
    EXPECT_TRUE(info.IsTimestampSet());
    EXPECT_EQ(info.GetTimestamp(), GetParam().wide);
    const auto limit = read<RecordCountLimit>(QStringLiteral("<UpperLimit>%1</UpperLimit>").arg(GetParam().text));
    EXPECT_TRUE(limit.IsUpperLimitSet());
    EXPECT_EQ(limit.GetUpperLimit(), GetParam().narrow);
}

INSTANTIATE_TEST_SUITE_P(Texts, NumberText,
                         testing::Values(NumberCase{"Plain", "17", 17, 17},
                                         NumberCase{"LargestInt", "2147483647", 2147483647, 2147483647},
                                         NumberCase{"BeyondInt", "2147483648", 2147483648, 0},
                                         NumberCase{"LargestUnsigned", "4294967295", 4294967295, 0},
                                         NumberCase{"LargestLong", "9223372036854775807", 9223372036854775807, 0},
                                         NumberCase{"BeyondLong", "18446744073709551615", 0, 0},
                                         NumberCase{"Negative", "-1", 18446744073709551615u, 4294967295u},
                                         NumberCase{"Hexadecimal", "0x11", 0, 0}, NumberCase{"Fraction", "1.5", 0, 0},
                                         NumberCase{"Empty", "", 0, 0}, NumberCase{"Word", "many", 0, 0}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(XmlInput, ReadsDoublesAndDates)
{
    const auto status = read<MassStorageStatus>("<FreeCapacityInPercent>12.375</FreeCapacityInPercent>");
    EXPECT_EQ(status.GetFreeCapacityInPercent(), 12.375);
    EXPECT_EQ(read<MassStorageStatus>("<FreeCapacityInPercent>x</FreeCapacityInPercent>").GetFreeCapacityInPercent(),
              0);
    const auto bite = read<KORVE_Bite>("<Time>never</Time>");
    EXPECT_TRUE(bite.IsTimeSet());
    EXPECT_FALSE(bite.GetTime().isValid());
}

TEST(XmlInput, StoresAnUnknownLiteralAsInvalidWithValidationOff)
{
    const auto deletion = read<ForcedDeletion>("<ProcessingState>to check</ProcessingState>", false);
    EXPECT_TRUE(deletion.IsProcessingStateSet());
    EXPECT_EQ(deletion.GetProcessingState(), -1);
    EXPECT_EQ(read<ForcedDeletion>("<ProcessingState>To Check</ProcessingState>").GetProcessingState(),
              ForcedDeletion::To_Check);
}

TEST(XmlInput, SkipsUnknownElementsSilently)
{
    const auto info = read<PelinInfo>("<New a='1'><Timestamp>1</Timestamp><Deep><PelinID>no</PelinID></Deep></New>"
                                      "<PelinID>P</PelinID><Other/>");
    EXPECT_EQ(info.GetPelinID().toStdString(), "P");
    EXPECT_FALSE(info.IsTimestampSet());
}

// The skip ends at the next element of the same name, be it a start.
TEST(XmlInput, ReadsOnInsideAnUnknownElementThatHoldsOneOfItsName)
{
    const auto info = read<PelinInfo>("<X><X><PelinID>P</PelinID></X></X><Timestamp>2</Timestamp>");
    EXPECT_EQ(info.GetPelinID().toStdString(), "P");
    EXPECT_EQ(info.GetTimestamp(), 2u);
}

TEST(XmlInput, OfAnElementOfTheObjectsOwnNameDoesNotEndTheObject)
{
    const auto entry = read<HistoryEntry>("<HistoryEntry>made</HistoryEntry><Timestamp>5</Timestamp>");
    EXPECT_EQ(entry.GetHistoryEntry().toStdString(), "made");
    EXPECT_EQ(entry.GetTimestamp(), 5u);
    const auto record = read<KORVE_RecordData>("<HistoryEntry><HistoryEntry>a</HistoryEntry></HistoryEntry>"
                                               "<HistoryEntry/><RecordID>R</RecordID>");
    ASSERT_EQ(record.GetHistoryEntry().size(), 2);
    EXPECT_EQ(record.GetHistoryEntry().at(0).GetHistoryEntry().toStdString(), "a");
    EXPECT_EQ(record.GetRecordID().toStdString(), "R");
}

TEST(XmlInput, MergesIntoWhatIsThere)
{
    KORVE_RecordData record;
    modeltest::fill(record);
    const KORVE_RecordData before = record;
    EXPECT_TRUE(record.SetXmlString("<KORVE_RecordData><Size>1</Size><PelinInfo><Timestamp>2</Timestamp></PelinInfo>"
                                    "<LinkedRecord><RecordID>L</RecordID></LinkedRecord></KORVE_RecordData>",
                                    false));
    EXPECT_EQ(record.GetSize(), 1u);
    EXPECT_EQ(record.GetRecordID(), before.GetRecordID());
    EXPECT_EQ(qAsConst(record).GetPelinInfo().GetTimestamp(), 2u);
    EXPECT_EQ(qAsConst(record).GetPelinInfo().GetPelinID(), before.GetPelinInfo().GetPelinID());
    ASSERT_EQ(qAsConst(record).GetLinkedRecord().size(), 3);
    EXPECT_EQ(qAsConst(record).GetLinkedRecord().at(2).GetRecordID().toStdString(), "L");
}

TEST(XmlInput, SetsTheBitOfANestedObject)
{
    const auto record = read<KORVE_RecordData>("<PelinInfo/>");
    EXPECT_TRUE(record.IsPelinInfoSet());
    EXPECT_FALSE(record.GetPelinInfo().IsPelinIDSet());
}

TEST(XmlInput, HandsFlagAndLoggerToFreshItems)
{
    KORVE_RecordData record;
    const auto logger = std::make_shared<Logger>();
    record.SetValidate(false);
    record.SetLogger(logger);
    EXPECT_TRUE(record.SetXmlString("<KORVE_RecordData><RecordingProcessingState><State>no such</State>"
                                    "</RecordingProcessingState></KORVE_RecordData>",
                                    false));
    ASSERT_EQ(qAsConst(record).GetRecordingProcessingState().size(), 1);
    const RecordingProcessingState item = qAsConst(record).GetRecordingProcessingState().at(0);
    EXPECT_EQ(item.GetState(), -1);
    EXPECT_FALSE(qAsConst(record).GetRecordingProcessingState().at(0).GetValidate());
    EXPECT_EQ(qAsConst(record).GetRecordingProcessingState().at(0).GetLogger(), logger);
}

TEST(XmlInput, IsEnteredOnTheStartElementAndLeftOnTheEndElement)
{
    QXmlStreamReader reader("<All><PelinInfo><PelinID>1</PelinID></PelinInfo><PelinInfo><Foo/><PelinID>2</PelinID>"
                            "</PelinInfo></All>");
    reader.readNextStartElement();
    for (const char *id : {"1", "2"}) {
        ASSERT_TRUE(reader.readNextStartElement());
        PelinInfo info;
        info.ProcessXml(reader);
        EXPECT_EQ(info.GetPelinID().toStdString(), id);
        EXPECT_TRUE(reader.isEndElement() && reader.name() == "PelinInfo");
    }
    EXPECT_FALSE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString().toStdString(), "All");
}

TEST(XmlInput, LetsASetterRefuseANumberThatCouldNotBeConverted)
{
    KORVE_CfgAutoDeletion deletion;
    EXPECT_EQ(modeltest::failureOf([&] {
                  deletion.SetXmlString(
                      "<KORVE_CfgAutoDeletion><Intervall>4294967295</Intervall></KORVE_CfgAutoDeletion>", false);
              }),
              "OutOfRangeException: Parameters for m_intervall must be larger or equal 1 in 'KORVE_CfgAutoDeletion'.");
    EXPECT_FALSE(deletion.IsIntervallSet());
}

TEST(XmlInput, LetsAFailureOfASetterPassAndKeepsWhatWasReadBefore)
{
    KORVE_RecordData record;
    EXPECT_NE(modeltest::failureOf([&] {
                  record.SetXmlString("<KORVE_RecordData><RecordID>R</RecordID><DataRate>?</DataRate><Size>1</Size>"
                                      "</KORVE_RecordData>",
                                      false);
              }),
              "");
    EXPECT_EQ(record.GetRecordID().toStdString(), "R");
    EXPECT_FALSE(record.IsDataRateSet() || record.IsSizeSet());
}

class BrokenDocument : public testing::TestWithParam<std::pair<const char *, QString>>
{
};

TEST_P(BrokenDocument, IsRefused)
{
    PelinInfo info;
    EXPECT_FALSE(info.SetXmlString(GetParam().second, false));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BrokenDocument,
    testing::Values(std::pair("Null", QString()), std::pair("Empty", QString("")),
                    std::pair("NoXml", QString("PelinInfo")), std::pair("ForeignRoot", QString("<LinkedRecord/>")),
                    std::pair("OtherCase", QString("<pelininfo/>")),
                    std::pair("Unclosed", QString("<PelinInfo><Timestamp>1</Timestamp>")),
                    std::pair("CutInAText", QString("<PelinInfo><PelinID>P")),
                    std::pair("CutInUnknown", QString("<PelinInfo><X><Y>")),
                    std::pair("WrongEnd", QString("<PelinInfo><PelinID>P</PelinInfo>")),
                    std::pair("TwoRoots", QString("<PelinInfo/><PelinInfo/>")),
                    std::pair("UnknownEntity", QString("<PelinInfo><PelinID>&x;</PelinID></PelinInfo>")),
                    std::pair("ControlCharacter", QString("<PelinInfo><PelinID>\x01</PelinID></PelinInfo>"))),
    [](const auto &row) { return std::string(row.param.first); });

TEST(XmlInput, SurvivesDeepNestingAndGrowingEntities)
{
    QString deep = "<PelinInfo>";
    for (int level = 0; level < 20000; ++level)
        deep += QStringLiteral("<a%1>").arg(level);
    EXPECT_FALSE(PelinInfo().SetXmlString(deep, false));

    QString bomb = "<!DOCTYPE PelinInfo [<!ENTITY e0 'ha'>";
    for (int level = 1; level < 40; ++level)
        bomb += QStringLiteral("<!ENTITY e%1 '&e%2;&e%2;'>").arg(level).arg(level - 1);
    EXPECT_FALSE(PelinInfo().SetXmlString(bomb + "]><PelinInfo><PelinID>&e39;</PelinID></PelinInfo>", false));
}

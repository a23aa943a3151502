#include "installation/recorder/recorddocument.h"
#include "installation/recorder/recordererror.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

using namespace installation::recorder;

namespace
{

const QString fileName = QStringLiteral("R1.sigmf-meta");

TEST(RecordDocument, KeepsEveryMember)
{
    const Record record = fullRecord(QStringLiteral("Sender 7"));
    const Record read = fromDocument(toDocument(record), fileName);
    EXPECT_EQ(static_cast<const RecordSummary &>(read), static_cast<const RecordSummary &>(record));
    EXPECT_EQ(read.index, record.index);
    EXPECT_EQ(read.bookmarks, record.bookmarks);
    EXPECT_EQ(read.history, record.history);
    EXPECT_EQ(fromDocument(toDocument(read), fileName), read);
}

TEST(RecordDocument, KeepsWhatItDoesNotKnow)
{
    const QJsonObject read = fromDocument(toDocument(fullRecord(QString())), fileName).sigmf;
    EXPECT_EQ(read["captures"].toArray().size(), 1);
    EXPECT_EQ(read["global"].toObject()["other:gain"].toDouble(), 17.5);
    EXPECT_EQ(read["global"].toObject()["core:datatype"].toString(), "ci16_le");
}

TEST(RecordDocument, NamesItsExtensionOnce)
{
    Record record = fromDocument(toDocument(fullRecord(QString())), fileName);
    record = fromDocument(toDocument(record), fileName);
    const QJsonArray extensions = record.sigmf["global"].toObject()["core:extensions"].toArray();
    ASSERT_EQ(extensions.size(), 1);
    EXPECT_EQ(extensions.first().toObject()["name"].toString(), "korve");
    EXPECT_TRUE(extensions.first().toObject()["optional"].toBool());
}

struct TextCase {
    const char *name;
    QString text;
};

class NameOfARecord : public testing::TestWithParam<TextCase>
{
};

TEST_P(NameOfARecord, SurvivesUnitByUnit)
{
    Record record = fullRecord(GetParam().text);
    record.bookmarks = {{1, GetParam().text}};
    const Record read = fromDocument(toDocument(record), fileName);
    EXPECT_EQ(read.name, GetParam().text);
    EXPECT_EQ(read.bookmarks.first().text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Texts, NameOfARecord,
                         testing::Values(TextCase{"Empty", QStringLiteral("")},
                                         TextCase{"Quotes", QStringLiteral("a \"b\" \\ \n \t")},
                                         TextCase{"Radio", QString::fromUtf8("\xF0\x9F\x93\xBB on air")},
                                         TextCase{"HalfAPair", QString(QChar(0xD83D)) + QStringLiteral("x")},
                                         TextCase{"HalfAPairAtTheEnd", QStringLiteral("x") + QChar(0xD83D)},
                                         TextCase{"Nul", QStringLiteral("a") + QChar(0) + QStringLiteral("b")}),
                         [](const auto &info) { return std::string(info.param.name); });

/// Written by hand: the members that a file of this version has.
QByteArray documentByHand()
{
    return R"({"global": {"core:datatype": "ri16_le",
  "korve:record_id": "R1", "korve:name": "by hand", "korve:size": "8", "korve:start_time": "1000000",
  "korve:stop_time": "2000000", "korve:status": "IDLE", "korve:data_format": "DIGITAL_AUDIO",
  "korve:data_rate": "VUHF_300k", "korve:loop_size": "0", "korve:start_position": "0", "korve:stop_position": "8",
  "korve:deletable": false,
  "korve:index": [{"offset": "0", "timestamp": "1000000", "tuner_frequency": "7", "sample_rate": "4", "bandwidth": "2"}],
  "korve:bookmarks": [{"timestamp": "1500000", "text": "half"}], "korve:history": []}})";
}

TEST(RecordDocument, IsReadAsWrittenByHand)
{
    const Record record = fromDocument(documentByHand(), fileName);
    EXPECT_EQ(record.id, "R1");
    EXPECT_EQ(record.name, "by hand");
    EXPECT_EQ(record.sizeBytes, 8u);
    EXPECT_EQ(record.startUs, 1'000'000u);
    EXPECT_EQ(record.stopUs, 2'000'000u);
    EXPECT_EQ(record.format, KORVE_XML::KORVE_RecordData::DIGITAL_AUDIO);
    EXPECT_EQ(record.rate, KORVE_XML::KORVE_RecordData::VUHF_300k);
    EXPECT_EQ(record.stopPosition, 8u);
    EXPECT_FALSE(record.deletable);
    EXPECT_EQ(record.index, (QVector<IndexEntry>{{0, 1'000'000, 7, 4, 2}}));
    EXPECT_EQ(record.bookmarks, (QVector<Note>{{1'500'000, "half"}}));
    EXPECT_TRUE(record.history.isEmpty());
}

TEST(RecordDocument, IsRefusedWhenCutAnywhere)
{
    const QByteArray whole = documentByHand();
    for (int length = 0; length < whole.size(); ++length)
        EXPECT_THROW(fromDocument(whole.left(length), fileName), RecorderError) << length;
}

struct DamageCase {
    const char *name;
    QByteArray before;
    QByteArray after;
    const char *reason;
};

class DamagedDocument : public testing::TestWithParam<DamageCase>
{
};

TEST_P(DamagedDocument, IsRefusedWithItsNameAndTheReason)
{
    QByteArray document = documentByHand();
    ASSERT_TRUE(document.contains(GetParam().before));
    document.replace(GetParam().before, GetParam().after);
    try {
        fromDocument(document, fileName);
        FAIL() << "was taken";
    } catch (const RecorderError &error) {
        EXPECT_EQ(error.kind(), TQ_KORVE::ekRECORD_CORRUPTED);
        EXPECT_TRUE(error.text().startsWith(fileName)) << error.what();
        EXPECT_TRUE(error.text().contains(QLatin1String(GetParam().reason))) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedDocument,
    testing::Values(
        DamageCase{"NoGlobal", "\"global\"", "\"other\"", "\"global\" is missing"},
        DamageCase{"NoId", "korve:record_id", "korve:record", "\"korve:record_id\" is missing"},
        DamageCase{"NameIsANumber", "\"by hand\"", "7", "\"korve:name\" is missing or not a text"},
        DamageCase{"SizeIsNegative", "\"korve:size\": \"8\"", "\"korve:size\": \"-8\"", "\"korve:size\""},
        DamageCase{"SizeIsTooLong", "\"korve:size\": \"8\"", "\"korve:size\": \"18446744073709551616\"", "korve:size"},
        DamageCase{"DeletableIsAText", "false", "\"false\"", "\"korve:deletable\" is missing or not true or false"},
        DamageCase{"StatusUnknown", "IDLE", "LAZY", "\"korve:status\" is \"LAZY\""},
        DamageCase{"FormatUnknown", "DIGITAL_AUDIO", "VINYL", "\"korve:data_format\" is \"VINYL\""},
        DamageCase{"RateUnknown", "VUHF_300k", "VUHF_301k", "\"korve:data_rate\" is \"VUHF_301k\""},
        DamageCase{"IndexIsNoList", "\"korve:history\": []", "\"korve:history\": {}", "\"korve:history\""},
        DamageCase{"ElementIsNoObject", "\"korve:history\": []", "\"korve:history\": [1]", "\"korve:history\""},
        DamageCase{"BookmarkWithoutText", "\"text\"", "\"txt\"", "\"text\" is missing"},
        DamageCase{"NulInAName", "\"korve:history\": []", "\"korve:history\": [{\"a\\u0000\": 1}]", "NUL"},
        DamageCase{"NotJson", "{\"global\"", "RIFF", "at byte"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(RecordDocument, IsRefusedWhenNestedWithoutEnd)
{
    EXPECT_THROW(fromDocument(QByteArray(1'000'000, '['), fileName), RecorderError);
}

} // namespace

#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/massstoragestatus.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <QBuffer>

#include <functional>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::hex;

namespace
{

using Setup = std::function<void(QDataStream &)>;

// How a caller may have set up the stream that an object is written to.
struct StreamCase {
    const char *name;
    Setup setup;
};

void PrintTo(const StreamCase &row, std::ostream *out)
{
    *out << row.name;
}

QByteArray written(const Setup &setup, const std::function<void(QDataStream &)> &write)
{
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    QDataStream out(&device);
    setup(out);
    write(out);
    EXPECT_EQ(out.status(), QDataStream::Ok);
    return device.data();
}

void littleEndian(QDataStream &stream)
{
    stream.setByteOrder(QDataStream::LittleEndian);
}

} // namespace

class StreamSettings : public testing::TestWithParam<StreamCase>
{
};

TEST_P(StreamSettings, AreKeptByTheCompactForm)
{
    MassStorageStatus status;
    status.SetTotalCapacity(-2);
    status.SetFreeCapacity(3);
    status.SetFreeCapacityInPercent(0.375);
    const QByteArray expected =
        written(GetParam().setup, [](QDataStream &out) { out << quint8(7) << qint64(-2) << qint64(3) << 0.375; });
    EXPECT_EQ(hex(written(GetParam().setup,
                          [&](QDataStream &out) { status.GetVersionSpecificBinaryWithoutValidation(out); })),
              hex(expected));
    PelinInfo info;
    info.SetPelinID(QString::fromUtf8("\u20ac"));
    EXPECT_EQ(
        hex(written(GetParam().setup, [&](QDataStream &out) { info.GetVersionSpecificBinaryWithoutValidation(out); })),
        hex(written(GetParam().setup, [](QDataStream &out) { out << quint8(1) << QString::fromUtf8("\u20ac"); })));
}

TEST_P(StreamSettings, DecideHowADateIsWritten)
{
    for (const QDateTime &time :
         {QDateTime(QDate(2020, 2, 29), QTime(23, 59, 58, 7), Qt::UTC), QDateTime(QDate(2020, 2, 29), QTime(1, 2)),
          QDateTime(QDate(2020, 2, 29), QTime(1, 2), Qt::OffsetFromUTC, 7200)}) {
        KORVE_Bite bite;
        bite.SetResultState(KORVE_Bite::OK);
        bite.SetTime(time);
        EXPECT_EQ(hex(written(GetParam().setup,
                              [&](QDataStream &out) { bite.GetVersionSpecificBinaryWithoutValidation(out); })),
                  hex(written(GetParam().setup, [&](QDataStream &out) { out << quint8(5) << qint8(0) << time; })));
    }
}

TEST_P(StreamSettings, BringARecordBack)
{
    KORVE_RecordData record;
    modeltest::fill(record);
    const QByteArray compact =
        written(GetParam().setup, [&](QDataStream &out) { record.GetVersionSpecificBinaryWithoutValidation(out); });
    QDataStream compactIn(compact);
    GetParam().setup(compactIn);
    KORVE_RecordData fromCompact;
    fromCompact.SetVersionSpecificBinaryWithoutValidation(compactIn);
    EXPECT_TRUE(fromCompact == record);
    EXPECT_TRUE(compactIn.atEnd());

    const QByteArray tagged = written(GetParam().setup, [&](QDataStream &out) { record.GetBinary(out, 1, true); });
    QDataStream taggedIn(tagged);
    GetParam().setup(taggedIn);
    qint32 tag = 0, length = 0;
    taggedIn >> tag >> length;
    KORVE_RecordData fromTagged;
    fromTagged.SetBinary(taggedIn, length);
    EXPECT_TRUE(fromTagged == record);
    EXPECT_TRUE(taggedIn.atEnd());
}

TEST_P(StreamSettings, DoNotMatterToTheWholeDocument)
{
    PelinInfo info;
    info.SetPelinID("P1");
    const QByteArray document = written(GetParam().setup, [&](QDataStream &out) { info.GetBinaryRepresentation(out); });
    EXPECT_EQ(hex(document), hex(bytes("cc0993ae 0000000e 2df731bf 00000006 00000002 5031")));
    QDataStream in(document);
    GetParam().setup(in);
    PelinInfo back;
    EXPECT_TRUE(back.SetBinaryRepresentation(in));
    EXPECT_TRUE(back == info);
}

INSTANTIATE_TEST_SUITE_P(
    Streams, StreamSettings,
    testing::Values(StreamCase{"Plain", [](QDataStream &stream) { stream.setVersion(QDataStream::Qt_5_12); }},
                    StreamCase{"LittleEndian", littleEndian},
                    StreamCase{"Old", [](QDataStream &stream) { stream.setVersion(QDataStream::Qt_4_5); }},
                    StreamCase{
                        "SinglePrecision",
                        [](QDataStream &stream) { stream.setFloatingPointPrecision(QDataStream::SinglePrecision); }}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(LargeContent, ComesBackInEveryForm)
{
    KORVE_RecordData record;
    modeltest::fill(record);
    record.SetRecordID(QString(3 * 1024 * 1024, 'x'));
    for (quint64 entry = 0; entry < 2000; ++entry)
        record.AppendIndexEntry(qAsConst(record).GetIndexEntry().at(static_cast<int>(entry)));
    KORVE_RecordData fromXml;
    EXPECT_TRUE(fromXml.SetXmlString(record.GetXmlString(), false));
    EXPECT_TRUE(fromXml == record);
    KORVE_RecordData fromTagged;
    modeltest::readTagged(fromTagged, modeltest::taggedPayload(record));
    EXPECT_TRUE(fromTagged == record);
    KORVE_RecordData fromCompact;
    modeltest::readCompact(fromCompact, modeltest::compactForm(record));
    EXPECT_TRUE(fromCompact == record);
}

#include "objectmodel/admin.h"
#include "objectmodel/korve_cfg.h"
#include "objectmodel/korve_recorddata.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

using namespace KORVE_XML;

namespace
{

KORVE_RecordData filledRecord()
{
    KORVE_RecordData record;
    modeltest::fill(record);
    return record;
}

PelinInfo pelinInfo()
{
    PelinInfo info;
    info.SetPelinID("P1");
    return info;
}

class Files : public testing::Test
{
protected:
    QTemporaryDir directory;

    QString path(const char *name) const { return directory.filePath(name); }

    QString written(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        return file.fileName();
    }
};

} // namespace

TEST(BinaryDocument, IsOneFrameUnderTheIdentifierOfTheClass)
{
    EXPECT_EQ(modeltest::hex(pelinInfo().GetBinaryRepresentationAsQByteArray()),
              modeltest::hex(modeltest::bytes("cc0993ae 0000000e 2df731bf 00000006 00000002 5031")));
}

TEST(BinaryDocument, ComesBackThroughAStream)
{
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    QDataStream stream(&device);
    EXPECT_TRUE(filledRecord().GetBinaryRepresentation(stream));
    device.seek(0);
    KORVE_RecordData back;
    EXPECT_TRUE(back.SetBinaryRepresentation(stream));
    EXPECT_TRUE(back == filledRecord());
}

TEST(BinaryDocument, OfAnotherClassOrShortenedIsRefused)
{
    for (const QByteArray &content :
         {QByteArray(), modeltest::bytes("cc0993"), modeltest::bytes("47b42530 00000000"),
          modeltest::bytes("cc0993ae 0000000e 2df731bf 00000006"), modeltest::bytes("cc0993ae ffffffff")}) {
        QDataStream stream(content);
        PelinInfo info;
        bool accepted = false;
        const std::string failure = modeltest::failureOf([&] { accepted = info.SetBinaryRepresentation(stream); });
        EXPECT_FALSE(accepted) << modeltest::hex(content) << failure;
    }
}

TEST(BinaryDocument, IsNotWrittenForAnObjectThatLacksARequiredBoolean)
{
    KORVE_RecordData record = filledRecord();
    record.ResetDeletable();
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    QDataStream stream(&device);
    EXPECT_FALSE(record.GetBinaryRepresentation(stream));
}

TEST(CompressedDocument, HoldsTheBinaryDocument)
{
    const KORVE_RecordData record = filledRecord();
    for (const int level : {-1, 0, 1, 9})
        EXPECT_EQ(modeltest::hex(qUncompress(record.GetCompressedBinaryRepresentationAsQByteArray(level))),
                  modeltest::hex(record.GetBinaryRepresentationAsQByteArray()));
    EXPECT_LT(record.GetCompressedBinaryRepresentationAsQByteArray(9).size(),
              record.GetCompressedBinaryRepresentationAsQByteArray(0).size());
}

TEST(CompressedDocument, IsWrittenToAStream)
{
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    QDataStream stream(&device);
    EXPECT_TRUE(filledRecord().GetCompressedBinaryRepresentation(stream, 9));
    EXPECT_GT(device.size(), 100);
}

TEST(XmlDocument, ComesBackFromItsText)
{
    KORVE_RecordData back;
    EXPECT_TRUE(back.SetXmlString(filledRecord().GetXmlString(), false));
    EXPECT_TRUE(back == filledRecord());
}

TEST(XmlDocument, OfAnObjectThatLacksARequiredBooleanHoldsNoElement)
{
    KORVE_RecordData record = filledRecord();
    record.ResetDeletable();
    EXPECT_FALSE(record.GetXmlString().contains("KORVE_RecordData"));
    EXPECT_FALSE(KORVE_RecordData().SetXmlString(record.GetXmlString(), false));
}

TEST_F(Files, KeepAnXmlDocument)
{
    EXPECT_TRUE(filledRecord().SaveXml(path("record.xml")));
    KORVE_RecordData byName;
    EXPECT_TRUE(byName.LoadXml(path("record.xml")));
    EXPECT_TRUE(byName == filledRecord());
    QFile file(path("record.xml"));
    KORVE_RecordData byFile;
    EXPECT_TRUE(byFile.LoadXml(&file));
    EXPECT_TRUE(byFile == filledRecord());
}

TEST_F(Files, KeepABinaryDocument)
{
    QFile file(written("record.bin", filledRecord().GetBinaryRepresentationAsQByteArray()));
    KORVE_RecordData back;
    EXPECT_TRUE(back.LoadBinary(&file));
    EXPECT_TRUE(back == filledRecord());
}

TEST_F(Files, ThatAreMissingOrBrokenAreRefused)
{
    PelinInfo info;
    EXPECT_FALSE(info.LoadXml(path("missing.xml")));
    QFile missing(path("missing.bin"));
    EXPECT_FALSE(info.LoadXml(&missing));
    EXPECT_FALSE(info.LoadBinary(&missing));
    EXPECT_FALSE(info.LoadXml(written("broken.xml", "<PelinInfo><PelinID>")));
    EXPECT_FALSE(info.LoadXml(written("foreign.xml", "<LinkedRecord/>")));
    EXPECT_FALSE(pelinInfo().SaveXml(path("no/such/folder.xml")));
}

TEST(Merge, AddsTheContentOfAnObjectOfTheSameClass)
{
    PelinInfo source;
    source.SetPelinID("new");
    PelinInfo target = pelinInfo();
    target.SetTimestamp(7);
    EXPECT_TRUE(target.MergeRGObject(source));
    EXPECT_EQ(target.GetPelinID().toStdString(), "new");
    EXPECT_EQ(target.GetTimestamp(), 7u);
}

TEST(Merge, LetsListsGrow)
{
    KORVE_RecordData record = filledRecord();
    EXPECT_TRUE(record.MergeRGObject(filledRecord()));
    EXPECT_EQ(qAsConst(record).GetIndexEntry().size(), 4);
}

TEST(Merge, RefusesAnObjectOfAnotherClass)
{
    Admin admin;
    EXPECT_FALSE(admin.MergeRGObject(pelinInfo()));
    EXPECT_FALSE(admin.AnyData());
}

TEST(VersionOfAClass, IsAText)
{
    EXPECT_FALSE(PelinInfo().GetVersion().isEmpty());
}

#include "tests/support/note.h"

#include "objectbase/exceptions.h"
#include "objectbase/logger.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <limits>

namespace
{

class WholeDocument : public testing::Test
{
protected:
    Note note;
};

TEST_F(WholeDocument, IsReadFromItsRootElement)
{
    EXPECT_TRUE(note.SetXmlString("<?xml version=\"1.0\"?><Note><a>one</a><b>two</b></Note>", false));
    EXPECT_EQ(note.text, "onetwo");
}

TEST_F(WholeDocument, WithAnotherRootIsRefused)
{
    EXPECT_FALSE(note.SetXmlString("<Other><a>one</a></Other>", false));
    EXPECT_EQ(note.children, 0);
}

TEST_F(WholeDocument, ThatIsMalformedIsRefused)
{
    EXPECT_FALSE(note.SetXmlString("<Note><a>one</a>", false));
    EXPECT_FALSE(note.SetXmlString("<Note/><Note/>", false));
    EXPECT_FALSE(note.SetXmlString("", false));
}

TEST_F(WholeDocument, ReplacesTheContentOnDemandOnly)
{
    note.text = QStringLiteral("old");
    EXPECT_TRUE(note.SetXmlString("<Note><a>new</a></Note>", false));
    EXPECT_EQ(note.text, "oldnew");
    EXPECT_TRUE(note.SetXmlString("<Note><a>new</a></Note>", true));
    EXPECT_EQ(note.text, "new");
}

TEST_F(WholeDocument, KeepsAChildOfTheObjectsOwnName)
{
    EXPECT_TRUE(note.SetXmlString("<Note><Note>one</Note><b>two</b></Note>", false));
    EXPECT_EQ(note.text, "onetwo");
}

TEST_F(WholeDocument, TakesTheTextOfAnElementWithoutThatOfItsChildren)
{
    EXPECT_TRUE(note.SetXmlString("<Note><a>1<!-- -->2<c>no</c><![CDATA[<3>]]></a></Note>", false));
    EXPECT_EQ(note.text, "12<3>");
}

TEST_F(WholeDocument, InBytesIsOneBigEndianFrameUnderTheIdentifier)
{
    note.text = QStringLiteral("hi");
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out.setVersion(QDataStream::Qt_4_0);
    EXPECT_TRUE(note.GetBinaryRepresentation(out));
    EXPECT_EQ(bytes, QByteArray::fromHex("f0000001000000026869"));
    EXPECT_EQ(out.byteOrder(), QDataStream::LittleEndian);
    EXPECT_EQ(out.version(), QDataStream::Qt_4_0);
}

TEST_F(WholeDocument, InBytesOfAnotherClassIsRefused)
{
    QDataStream in(QByteArray::fromHex("f0000002000000026869"));
    EXPECT_THROW(note.SetBinaryRepresentation(in), REPORTGENERATOR::BinaryParsingException);
}

TEST_F(WholeDocument, InBytesThatEndInTheHeaderIsRefused)
{
    QDataStream in(QByteArray::fromHex("f00000"));
    EXPECT_FALSE(note.SetBinaryRepresentation(in));
}

TEST_F(WholeDocument, ComesBackFromItsBytes)
{
    note.text = QString::fromUtf8("grün");
    QDataStream in(note.GetBinaryRepresentationAsQByteArray());
    Note copy;
    EXPECT_TRUE(copy.SetBinaryRepresentation(in));
    EXPECT_EQ(copy.text, note.text);
}

TEST_F(WholeDocument, ComesBackFromItsCompressedBytes)
{
    note.text = QString(1000, 'x');
    const QByteArray bytes = note.GetCompressedBinaryRepresentationAsQByteArray(9);
    EXPECT_LT(bytes.size(), 100);
    EXPECT_EQ(qUncompress(bytes), note.GetBinaryRepresentationAsQByteArray());

    QByteArray streamed;
    QDataStream out(&streamed, QIODevice::WriteOnly);
    EXPECT_TRUE(note.GetCompressedBinaryRepresentation(out, 9));
    EXPECT_EQ(streamed.mid(4), bytes);
}

TEST_F(WholeDocument, ComesBackFromAFile)
{
    QTemporaryDir folder;
    const QString name = folder.filePath("note.xml");
    note.text = QString::fromUtf8("über");
    ASSERT_TRUE(note.SaveXml(name));
    Note copy;
    EXPECT_FALSE(copy.LoadXml(folder.filePath("missing.xml")));
    EXPECT_TRUE(copy.LoadXml(name));
    EXPECT_EQ(copy.children, 0) << "the text stands in the object's own element, which has no children";

    QFile bytes(folder.filePath("note.bin"));
    ASSERT_TRUE(bytes.open(QIODevice::WriteOnly));
    bytes.write(note.GetBinaryRepresentationAsQByteArray());
    bytes.close();
    EXPECT_TRUE(copy.LoadBinary(&bytes));
    EXPECT_EQ(copy.text, note.text);
    EXPECT_FALSE(copy.LoadBinary(nullptr));
}

TEST_F(WholeDocument, LeavesAFileAsItWas)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("note.bin"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(note.GetBinaryRepresentationAsQByteArray());
    EXPECT_FALSE(note.LoadBinary(&file)) << "open for writing";
    EXPECT_TRUE(file.isOpen());
    file.close();
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(note.LoadBinary(&file)) << round;
        EXPECT_FALSE(file.isOpen());
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(note.LoadBinary(&file));
    EXPECT_TRUE(file.atEnd());
    EXPECT_FALSE(note.LoadXml(static_cast<QFile *>(nullptr)));
}

TEST_F(WholeDocument, IsMergedThroughItsXml)
{
    note.text = QStringLiteral("mine");
    Note other;
    other.text = QStringLiteral("other");
    EXPECT_TRUE(note.MergeRGObject(other));
    EXPECT_EQ(note.text, "mine");
}

TEST(UnknownElement, IsSteppedOverAsFarAsThereAreBytes)
{
    Note note;
    QBuffer buffer;
    buffer.setData("abcdef");
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    QDataStream in(&buffer);
    EXPECT_EQ(note.skipCurrentElement(in, 4, 1), 4);
    EXPECT_EQ(note.skipCurrentElement(in, 4, 1), 2);
    EXPECT_EQ(note.skipCurrentElement(in, -5, 1), 0);
    EXPECT_EQ(in.status(), QDataStream::Ok);
}

TEST(NewObject, ValidatesHasNoLoggerAndKnowsItsType)
{
    const Note note(REPORTGENERATOR::XmlObjectType);
    EXPECT_TRUE(note.GetValidate());
    EXPECT_EQ(note.GetLogger(), nullptr);
    EXPECT_EQ(note.GetObjectType(), REPORTGENERATOR::XmlObjectType);
    EXPECT_EQ(note.GetVersion(), "1.0");
}

TEST(Settings, CanBeChangedOnAConstObject)
{
    const Note note;
    note.SetValidate(false);
    EXPECT_FALSE(note.GetValidate());
    const auto logger = std::make_shared<REPORTGENERATOR::Logger>();
    note.SetLogger(logger);
    EXPECT_EQ(note.GetLogger(), logger);
    note.ResetLogger();
    EXPECT_EQ(note.GetLogger(), nullptr);
}

TEST(CheckWithoutArgument, PassesFalse)
{
    const Note note;
    static_cast<const REPORTGENERATOR::IRGObject &>(note).Check();
    EXPECT_FALSE(note.checkedWith);
}

template <class T> void expectInvalidAfterMarking(T value)
{
    const Note note;
    EXPECT_TRUE(note.IsValid(value));
    note.SetInvalid(value);
    EXPECT_FALSE(note.IsValid(value));
}

TEST(InvalidMarker, IsRecognisedPerType)
{
    expectInvalidAfterMarking(1.5F);
    expectInvalidAfterMarking(1U);
    expectInvalidAfterMarking(qint64(1));
    expectInvalidAfterMarking(QStringLiteral("a"));
    expectInvalidAfterMarking(1.5);
    expectInvalidAfterMarking(1);
    EXPECT_TRUE(Note().IsValid(false));
    EXPECT_FALSE(Note().IsValid(QDateTime()));
}

} // namespace

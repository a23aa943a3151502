#include "korvebase/recordidentifier.h"

#include <gtest/gtest.h>

#include <QHash>
#include <QSet>

using korve::RecordIdentifier;

namespace
{

TEST(RecordIdentifiers, HoldSubsystemDeviceAndRecordInThisOrder)
{
    const RecordIdentifier three("sub", "dev", "rec");
    EXPECT_EQ(three.subSystem(), "sub");
    EXPECT_EQ(three.deviceID(), "dev");
    EXPECT_EQ(three.recordID(), "rec");

    const RecordIdentifier two("dev", "rec");
    EXPECT_EQ(two.subSystem(), "");
    EXPECT_EQ(two.deviceID(), "dev");
    EXPECT_EQ(two.recordID(), "rec");

    EXPECT_EQ(RecordIdentifier(), RecordIdentifier("", "", ""));
}

TEST(RecordIdentifiers, AreValidWithDeviceAndRecord)
{
    EXPECT_TRUE(RecordIdentifier("dev", "rec").valid());
    EXPECT_TRUE(RecordIdentifier("sub", "dev", "rec").valid());
    EXPECT_FALSE(RecordIdentifier().valid());
    EXPECT_FALSE(RecordIdentifier("sub", "", "rec").valid());
    EXPECT_FALSE(RecordIdentifier("sub", "dev", "").valid());
}

TEST(RecordIdentifiers, AreShownAsText)
{
    EXPECT_EQ(RecordIdentifier("sub", "dev", "rec").toString(), "rec@sub/dev");
    EXPECT_EQ(RecordIdentifier("dev", "rec").toString(), "rec@dev");
    EXPECT_EQ(RecordIdentifier("a@/", "%1", "b/@").toString(), "b/@@a@//%1");
    for (const auto &invalid : {RecordIdentifier(), RecordIdentifier("sub", "", "rec"), RecordIdentifier("dev", "")})
        EXPECT_EQ(invalid.toString(), "[invalid]");
}

TEST(RecordIdentifiers, HaveTheHashOfTheirRecord)
{
    for (const char *record : {"", "R1", "record-with-a-long-name"}) {
        const int hash = static_cast<int>(qHash(QString(record), 0));
        EXPECT_EQ(RecordIdentifier("sub", "dev", record).hashValue(), hash);
        EXPECT_EQ(qHash(RecordIdentifier("dev", record)), static_cast<uint>(hash));
    }
    EXPECT_EQ(RecordIdentifier().hashValue(), RecordIdentifier("sub", "dev", "").hashValue());
}

TEST(RecordIdentifiers, DifferInEachPart)
{
    const RecordIdentifier identifier("sub", "dev", "rec");
    EXPECT_TRUE(identifier == RecordIdentifier("sub", "dev", "rec"));
    EXPECT_FALSE(identifier != RecordIdentifier("sub", "dev", "rec"));
    for (const auto &other : {RecordIdentifier("other", "dev", "rec"), RecordIdentifier("sub", "other", "rec"),
                              RecordIdentifier("sub", "dev", "other"), RecordIdentifier("dev", "sub", "rec")}) {
        EXPECT_FALSE(identifier == other);
        EXPECT_TRUE(identifier != other);
    }
}

TEST(RecordIdentifiers, AreLessInAnyPartAndNotInOrder)
{
    const RecordIdentifier a("x", "2", "1");
    const RecordIdentifier b("y", "1", "1");
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b < a);
    EXPECT_FALSE(a < a);
    EXPECT_TRUE(RecordIdentifier("x", "1", "1") < RecordIdentifier("x", "1", "2"));
    EXPECT_FALSE(RecordIdentifier("x", "1", "2") < RecordIdentifier("x", "1", "1"));
}

TEST(RecordIdentifiers, AreCopied)
{
    RecordIdentifier copy;
    const RecordIdentifier original("sub", "dev", "rec");
    copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_EQ(copy.hashValue(), original.hashValue());
}

TEST(RecordIdentifiers, AreKeys)
{
    QHash<RecordIdentifier, int> table;
    table.insert(RecordIdentifier("a", "dev", "rec"), 1);
    table.insert(RecordIdentifier("b", "dev", "rec"), 2);
    EXPECT_EQ(table.value(RecordIdentifier("a", "dev", "rec")), 1);
    EXPECT_EQ(table.value(RecordIdentifier("b", "dev", "rec")), 2);
    EXPECT_EQ((QSet<RecordIdentifier>{RecordIdentifier("d", "r"), RecordIdentifier("", "d", "r")}).size(), 1);
}

/// The stream form of ("S", "D", "R1"): the block's length in the machine's order, then big-endian lengths and UTF-16.
std::string knownBytes()
{
    const quint32 length = 20;
    std::string bytes(reinterpret_cast<const char *>(&length), sizeof length);
    constexpr char texts[] = "\0\0\0\2\0S"
                             "\0\0\0\2\0D"
                             "\0\0\0\4\0R\0001";
    return bytes.append(texts, sizeof texts - 1);
}

TEST(RecordIdentifierStream, HasTheThreeTextsInABlock)
{
    EXPECT_EQ(Ulma::toStandardString(RecordIdentifier("S", "D", "R1")), knownBytes());
}

TEST(RecordIdentifierStream, IsReadWhereThePositionStands)
{
    const std::string bytes = knownBytes() + knownBytes() + "rest";
    const char *position = bytes.data();
    EXPECT_EQ(Ulma::fromCharStream<RecordIdentifier>(&position), RecordIdentifier("S", "D", "R1"));
    RecordIdentifier second;
    EXPECT_TRUE(Ulma::fromCharStream(&position, second));
    EXPECT_EQ(second, RecordIdentifier("S", "D", "R1"));
    EXPECT_STREQ(position, "rest");
}

TEST(RecordIdentifierStream, KeepsEveryText)
{
    const QString longText(10000, u'\u0416');
    const QString emoji = QString::fromUtf8("\U0001F4FB@/%1\"");
    for (const auto &identifier : {RecordIdentifier(), RecordIdentifier("", "dev", ""),
                                   RecordIdentifier(emoji, longText), RecordIdentifier(emoji, emoji, emoji)}) {
        const std::string bytes = Ulma::toStandardString(identifier);
        const char *position = bytes.data();
        RecordIdentifier read("other", "other");
        EXPECT_TRUE(Ulma::fromCharStream(&position, bytes.data() + bytes.size(), read));
        EXPECT_EQ(read, identifier);
        EXPECT_EQ(read.hashValue(), identifier.hashValue());
        EXPECT_EQ(position, bytes.data() + bytes.size());
    }
}

TEST(RecordIdentifierStream, IsRefusedWhenItEndsTooSoon)
{
    const std::string whole = knownBytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string bytes = whole.substr(0, size);
        const char *position = bytes.data();
        RecordIdentifier read("kept", "kept");
        EXPECT_FALSE(Ulma::fromCharStream(&position, bytes.data() + bytes.size(), read));
        EXPECT_EQ(position, bytes.data());
        EXPECT_EQ(read, RecordIdentifier("kept", "kept"));
    }
}

TEST(RecordIdentifierStream, IsRefusedWhenItsTextsReachBeyondTheBlock)
{
    const std::string tail = knownBytes().substr(sizeof(quint32));
    for (quint32 size = 0; size < tail.size(); ++size) {
        std::string bytes(reinterpret_cast<const char *>(&size), sizeof size);
        bytes += tail;
        const char *position = bytes.data();
        RecordIdentifier read("kept", "kept");
        EXPECT_FALSE(Ulma::fromCharStream(&position, bytes.data() + bytes.size(), read)) << size;
        EXPECT_EQ(read, RecordIdentifier("kept", "kept"));
    }
}

} // namespace

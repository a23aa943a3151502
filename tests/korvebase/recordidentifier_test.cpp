#include "korvebase/recordidentifier.h"

#include "coresupport/charstream.h"

#include <gtest/gtest.h>

#include <QHash>
#include <QSet>

#include <random>
#include <utility>

using korve::RecordIdentifier;

namespace
{
RecordIdentifier identifier(const char *subSystem, const char *deviceID, const char *recordID)
{
    return RecordIdentifier(QString::fromUtf8(subSystem), QString::fromUtf8(deviceID), QString::fromUtf8(recordID));
}

/// The bytes of @p text, NULs included.
template <std::size_t size> std::string bytes(const char (&text)[size])
{
    return std::string(text, size - 1);
}

/// North, D1, R7 on a little-endian machine: what the length counts is in network order.
const std::string northD1R7 = bytes("\x1e\0\0\0") + bytes("\0\0\0\x0a\0N\0o\0r\0t\0h") + bytes("\0\0\0\x04\0D\0001") +
                              bytes("\0\0\0\x04\0R\0007");

TEST(RecordIdentifier, IsEmptyFromTheStart)
{
    const RecordIdentifier none;
    EXPECT_TRUE(none.subSystem().isEmpty() && none.deviceID().isEmpty() && none.recordID().isEmpty());
    EXPECT_FALSE(none.valid());
    EXPECT_EQ(none.hashValue(), static_cast<int>(qHash(QString(), 0)));
    EXPECT_EQ(none, identifier("", "", ""));
}

TEST(RecordIdentifier, TakesItsPartsFromTheOutside)
{
    const RecordIdentifier full(QStringLiteral("North"), QStringLiteral("D1"), QStringLiteral("R7"));
    EXPECT_EQ(full.subSystem(), QStringLiteral("North"));
    EXPECT_EQ(full.deviceID(), QStringLiteral("D1"));
    EXPECT_EQ(full.recordID(), QStringLiteral("R7"));
    const RecordIdentifier local(QStringLiteral("D1"), QStringLiteral("R7"));
    EXPECT_TRUE(local.subSystem().isEmpty());
    EXPECT_EQ(local.deviceID(), QStringLiteral("D1"));
    EXPECT_EQ(local.recordID(), QStringLiteral("R7"));
}

TEST(RecordIdentifier, IsValidWithDeviceAndRecord)
{
    EXPECT_TRUE(identifier("North", "D1", "R7").valid());
    EXPECT_TRUE(identifier("", "D1", "R7").valid());
    EXPECT_FALSE(identifier("North", "", "R7").valid());
    EXPECT_FALSE(identifier("North", "D1", "").valid());
    EXPECT_TRUE(identifier("", " ", "@").valid());
}

TEST(RecordIdentifier, ReadsAsRecordAtSubsystemAndDevice)
{
    EXPECT_EQ(identifier("North", "D1", "R7").toString(), QStringLiteral("R7@North/D1"));
    EXPECT_EQ(identifier("", "D1", "R7").toString(), QStringLiteral("R7@D1"));
    EXPECT_EQ(identifier("North", "", "R7").toString(), QStringLiteral("[invalid]"));
    EXPECT_EQ(identifier("North", "D1", "").toString(), QStringLiteral("[invalid]"));
    EXPECT_EQ(RecordIdentifier().toString(), QStringLiteral("[invalid]"));
}

TEST(RecordIdentifier, KeepsAwkwardTextsToTheLetter)
{
    const RecordIdentifier awkward = identifier("%1/%2", "a@b", "%1 'é' \"📡\"");
    EXPECT_EQ(awkward.toString(), QString::fromUtf8("%1 'é' \"📡\"@%1/%2/a@b"));
    const std::string longName(10000, 'x');
    EXPECT_EQ(identifier("", "D", longName.c_str()).toString().size(), 10002);
}

TEST(RecordIdentifier, HasTheHashOfItsRecordAlone)
{
    const int ofRecord = static_cast<int>(qHash(QStringLiteral("R7"), 0));
    for (const RecordIdentifier &one :
         {identifier("North", "D1", "R7"), identifier("South", "D2", "R7"), identifier("", "", "R7")}) {
        EXPECT_EQ(one.hashValue(), ofRecord);
        EXPECT_EQ(qHash(one), static_cast<uint>(ofRecord));
    }
    EXPECT_NE(identifier("", "", "R8").hashValue(), ofRecord);
}

TEST(RecordIdentifier, IsEqualInAllThreeParts)
{
    const RecordIdentifier one = identifier("North", "D1", "R7");
    EXPECT_TRUE(one == identifier("North", "D1", "R7"));
    EXPECT_FALSE(one != identifier("North", "D1", "R7"));
    for (const RecordIdentifier &other :
         {identifier("South", "D1", "R7"), identifier("North", "D2", "R7"), identifier("North", "D1", "R8")}) {
        EXPECT_FALSE(one == other);
        EXPECT_TRUE(one != other);
    }
}

/// Two records whose hashes are equal; empty ones when none are found.
std::pair<QString, QString> recordsOfOneHash()
{
    std::mt19937 random(1);
    QHash<uint, QString> seen;
    for (int tries = 0; tries < 2'000'000; ++tries) {
        const QString record = QString::number(random()) + QString::number(random());
        const QString before = seen.value(qHash(record, 0));
        if (!before.isEmpty() && before != record)
            return {before, record};
        seen.insert(qHash(record, 0), record);
    }
    return {};
}

TEST(RecordIdentifier, DiffersFromOneWithTheSameHash)
{
    const auto [one, other] = recordsOfOneHash();
    ASSERT_NE(one, other);
    const QString device = QStringLiteral("D1");
    EXPECT_EQ(RecordIdentifier(device, one).hashValue(), RecordIdentifier(device, other).hashValue());
    EXPECT_FALSE(RecordIdentifier(device, one) == RecordIdentifier(device, other));
    EXPECT_TRUE(RecordIdentifier(device, one) != RecordIdentifier(device, other));
}

TEST(RecordIdentifier, IsLessWhenAnyPartIs)
{
    const RecordIdentifier a = identifier("x", "2", "1");
    const RecordIdentifier b = identifier("y", "1", "1");
    EXPECT_TRUE(a < b); // by the subsystem
    EXPECT_TRUE(b < a); // by the device
    EXPECT_TRUE(identifier("x", "1", "1") < identifier("x", "1", "2"));
    EXPECT_TRUE(identifier("y", "2", "1") < identifier("x", "1", "2"));
    EXPECT_FALSE(identifier("x", "1", "2") < identifier("x", "1", "1"));
    EXPECT_FALSE(a < a);
    EXPECT_TRUE(identifier("x", "1", "10") < identifier("x", "1", "9")); // text, not number
}

TEST(RecordIdentifier, IsCopiedWithItsHash)
{
    const RecordIdentifier one = identifier("North", "D1", "R7");
    const RecordIdentifier copy(one);
    RecordIdentifier assigned = identifier("South", "D2", "R8");
    assigned = one;
    EXPECT_EQ(copy, one);
    EXPECT_EQ(assigned, one);
    EXPECT_EQ(assigned.hashValue(), one.hashValue());
    EXPECT_EQ(assigned.toString(), QStringLiteral("R7@North/D1"));
}

TEST(RecordIdentifier, IsAKey)
{
    QHash<RecordIdentifier, int> numbers{{identifier("North", "D1", "R7"), 1}, {identifier("South", "D1", "R7"), 2}};
    EXPECT_EQ(numbers.size(), 2);
    EXPECT_EQ(numbers.value(identifier("South", "D1", "R7")), 2);
    EXPECT_FALSE(QSet<RecordIdentifier>({identifier("", "D1", "R7")}).contains(identifier("North", "D1", "R7")));
}

TEST(RecordIdentifier, IsWrittenAsABlockOfThreeTexts)
{
    EXPECT_EQ(Ulma::toStandardString<RecordIdentifier>(identifier("North", "D1", "R7")), northD1R7);
    EXPECT_EQ(Ulma::toStandardString(identifier("North", "D1", "R7")), northD1R7);
}

TEST(RecordIdentifier, IsReadInBothForms)
{
    const std::string stream = northD1R7 + northD1R7 + ";";
    const char *cursor = stream.data();
    EXPECT_EQ(Ulma::fromCharStream<RecordIdentifier>(&cursor), identifier("North", "D1", "R7"));
    EXPECT_EQ(cursor, stream.data() + northD1R7.size());
    RecordIdentifier second;
    EXPECT_TRUE(Ulma::fromCharStream<RecordIdentifier>(&cursor, second));
    EXPECT_EQ(second, identifier("North", "D1", "R7"));
    EXPECT_EQ(second.hashValue(), identifier("", "", "R7").hashValue());
    EXPECT_EQ(std::string(cursor), ";");
}

TEST(RecordIdentifier, SurvivesTheCharStream)
{
    for (const RecordIdentifier &one : {RecordIdentifier(), identifier("", "D1", "R7"), identifier("é", "📡", "%1@/;|"),
                                        identifier("", "", std::string(10000, 'x').c_str())}) {
        const std::string stream = Ulma::toStandardString(one);
        const char *cursor = stream.data();
        EXPECT_EQ(Ulma::fromCharStream<RecordIdentifier>(&cursor), one);
        EXPECT_EQ(cursor, stream.data() + stream.size());
    }
}

TEST(RecordIdentifier, IsNotReadFromPartOfABlock)
{
    for (std::size_t length = 0; length < northD1R7.size(); ++length) {
        const std::string part = northD1R7.substr(0, length);
        const char *cursor = part.data();
        RecordIdentifier kept = identifier("South", "D2", "R8");
        EXPECT_FALSE(Ulma::fromCharStream(&cursor, part.data() + part.size(), kept)) << length;
        EXPECT_EQ(cursor, part.data());
        EXPECT_EQ(kept, identifier("South", "D2", "R8"));
    }
}

TEST(RecordIdentifier, IsReadFromAWholeBlockWithAnEnd)
{
    const char *cursor = northD1R7.data();
    RecordIdentifier read;
    EXPECT_TRUE(Ulma::fromCharStream(&cursor, northD1R7.data() + northD1R7.size(), read));
    EXPECT_EQ(read, identifier("North", "D1", "R7"));
    EXPECT_EQ(cursor, northD1R7.data() + northD1R7.size());
}

TEST(RecordIdentifier, IsNotReadFromABlockThatIsTooShortForItsTexts)
{
    const std::string tail = northD1R7.substr(4) + "behind";
    for (char length = 0; length < 30; ++length) {
        const std::string stream = std::string(1, length) + bytes("\0\0\0") + tail;
        const char *cursor = stream.data();
        RecordIdentifier kept = identifier("South", "D2", "R8");
        EXPECT_FALSE(Ulma::fromCharStream(&cursor, stream.data() + stream.size(), kept)) << int(length);
        EXPECT_EQ(cursor, stream.data());
        EXPECT_EQ(kept, identifier("South", "D2", "R8"));
    }
}

TEST(RecordIdentifier, IsNotReadWhereALengthIsHugeOrOdd)
{
    const std::string oddText = bytes("\x0d\0\0\0") + bytes("\0\0\0\x01N") + bytes("\0\0\0\0\0\0\0\0");
    const std::string hugeText = bytes("\x06\0\0\0") + bytes("\x7f\xff\xff\xf0\0N");
    const std::string hugeBlock = bytes("\xff\xff\xff\xff") + northD1R7.substr(4);
    for (const std::string &stream : {oddText, hugeText, hugeBlock}) {
        const char *cursor = stream.data();
        RecordIdentifier kept = identifier("South", "D2", "R8");
        EXPECT_FALSE(Ulma::fromCharStream(&cursor, stream.data() + stream.size(), kept));
        EXPECT_EQ(cursor, stream.data());
        EXPECT_EQ(kept, identifier("South", "D2", "R8"));
    }
}

TEST(RecordIdentifier, IsFollowedByTheEndOfItsBlock)
{
    const std::string stream = bytes("\x20\0\0\0") + northD1R7.substr(4) + "++;";
    const char *cursor = stream.data();
    EXPECT_EQ(Ulma::fromCharStream<RecordIdentifier>(&cursor), identifier("North", "D1", "R7"));
    EXPECT_EQ(std::string(cursor), ";");
}
} // namespace

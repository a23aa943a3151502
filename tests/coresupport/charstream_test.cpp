#include "coresupport/charstream.h"

#include <gmock/gmock.h>

namespace
{
using Ulma::fromCharStream;
using Ulma::toStandardString;

/// The bytes of @p text on a little-endian machine, NULs included.
template <std::size_t size> std::string bytes(const char (&text)[size])
{
    return std::string(text, size - 1);
}

TEST(CharStream, WritesNumbersAsTheirRawBytes)
{
    EXPECT_EQ(toStandardString<qint32>(-2), bytes("\xfe\xff\xff\xff"));
    EXPECT_EQ(toStandardString<quint32>(0x01020304), bytes("\x04\x03\x02\x01"));
    EXPECT_EQ(toStandardString<quint64>(0x0102030405060708), bytes("\x08\x07\x06\x05\x04\x03\x02\x01"));
    EXPECT_EQ(toStandardString<double>(1.0), bytes("\0\0\0\0\0\0\xf0\x3f"));
}

TEST(CharStream, WritesTextAsCountAndUtf16)
{
    EXPECT_EQ(toStandardString(QStringLiteral("aß")), bytes("\x02\0\0\0a\0\xdf\0"));
    EXPECT_EQ(toStandardString(QString()), bytes("\0\0\0\0"));
    EXPECT_EQ(toStandardString(QString::fromUcs4(U"\U0001F4E1")), bytes("\x02\0\0\0\x3d\xd8\xe1\xdc"));
}

TEST(CharStream, WritesABlockAsLengthAndBytes)
{
    EXPECT_EQ(toStandardString(QByteArray("a\0;", 3)), bytes("\x03\0\0\0a\0;"));
}

TEST(CharStream, ReadsWhatStandsThereAndMovesBehindIt)
{
    const std::string stream = bytes("\xfe\xff\xff\xff") + bytes("\x02\0\0\0a\0\xdf\0") + bytes("\x03\0\0\0a\0;") + ";";
    const char *cursor = stream.data();
    const char *const end = stream.data() + stream.size();
    EXPECT_EQ(fromCharStream<qint32>(&cursor), -2);
    QString text;
    EXPECT_TRUE(fromCharStream(&cursor, text));
    EXPECT_EQ(text, QStringLiteral("aß"));
    QByteArray block;
    EXPECT_TRUE(fromCharStream(&cursor, end, block));
    EXPECT_EQ(block, QByteArray("a\0;", 3));
    EXPECT_TRUE(Ulma::EatSemicolon(&cursor, end));
    EXPECT_EQ(cursor, end);
}

TEST(CharStream, ReadsANullTextBackAsAnEmptyOne)
{
    const std::string stream = toStandardString(QString());
    const char *cursor = stream.data();
    const QString text = fromCharStream<QString>(&cursor);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_FALSE(text.isNull());
}

TEST(CharStream, YieldsADefaultForALengthThatCannotBe)
{
    const std::string stream = bytes("\xff\xff\xff\xff");
    const char *cursor = stream.data();
    EXPECT_EQ(fromCharStream<QString>(&cursor), QString());
    EXPECT_EQ(cursor, stream.data());
}

/// Every shortened form of a value is refused, and leaves cursor and value alone.
template <typename T> void expectRefusedWhenTruncated(const T &value)
{
    const std::string stream = toStandardString(value);
    for (std::size_t size = 0; size < stream.size(); ++size) {
        const std::string part = stream.substr(0, size); // a copy, so that the address sanitizer sees its end
        const char *cursor = part.data();
        T target{};
        EXPECT_FALSE(fromCharStream(&cursor, part.data() + size, target)) << size;
        EXPECT_EQ(cursor, part.data());
        EXPECT_EQ(target, T{});
    }
}

TEST(CharStream, RefusesTruncatedValues)
{
    expectRefusedWhenTruncated<qint32>(7);
    expectRefusedWhenTruncated<quint64>(7);
    expectRefusedWhenTruncated(QStringLiteral("truncated"));
    expectRefusedWhenTruncated(QByteArray("truncated"));
}

struct LengthCase {
    const char *name;
    std::string stream;
};

class OversizedLength : public testing::TestWithParam<LengthCase>
{
};

TEST_P(OversizedLength, IsRefusedBeforeAnythingIsReserved)
{
    const std::string &stream = GetParam().stream;
    const char *cursor = stream.data();
    QString text;
    EXPECT_FALSE(fromCharStream(&cursor, stream.data() + stream.size(), text));
    QByteArray block;
    EXPECT_FALSE(fromCharStream(&cursor, stream.data() + stream.size(), block));
    EXPECT_EQ(cursor, stream.data());
}

INSTANTIATE_TEST_SUITE_P(Forms, OversizedLength,
                         testing::Values(LengthCase{"OneTooMany", bytes("\x05\0\0\0abcd")},
                                         LengthCase{"Largest", bytes("\xff\xff\xff\xff"
                                                                     "abcd")},
                                         LengthCase{"LargestOfQt", bytes("\xff\xff\xff\x7f"
                                                                         "abcd")},
                                         LengthCase{"DoubledToZero", bytes("\0\0\0\x80"
                                                                           "abcd")}),
                         [](const auto &row) { return row.param.name; });

TEST(Semicolon, IsPassedOnce)
{
    const char *cursor = ";;x";
    const char *const begin = cursor;
    EXPECT_TRUE(Ulma::EatSemicolon(&cursor));
    EXPECT_EQ(cursor, begin + 1);
    EXPECT_TRUE(Ulma::EatSemicolon(&cursor));
    EXPECT_FALSE(Ulma::EatSemicolon(&cursor));
    EXPECT_EQ(cursor, begin + 2);
}

TEST(Semicolon, IsAbsentAtTheEnd)
{
    const char *const text = ";";
    const char *cursor = text;
    EXPECT_FALSE(Ulma::EatSemicolon(&cursor, text));
    cursor = text + 1;
    EXPECT_FALSE(Ulma::EatSemicolon(&cursor));
    EXPECT_FALSE(Ulma::EatSemicolon(&cursor, text + 1));
    EXPECT_EQ(cursor, text + 1);
}
} // namespace

namespace sample
{
struct Pair {
    QString first;
    qint32 second = 0;
};
} // namespace sample

template <> struct Ulma::CharStreamForm<sample::Pair> {
    static void write(std::string &out, const sample::Pair &value)
    {
        CharStreamForm<QString>::write(out, value.first);
        CharStreamForm<qint32>::write(out, value.second);
    }
    static bool read(CharStreamReader &in, sample::Pair &value)
    {
        sample::Pair fresh;
        if (!CharStreamForm<QString>::read(in, fresh.first) || !CharStreamForm<qint32>::read(in, fresh.second))
            return false;
        value = fresh;
        return true;
    }
};

namespace
{
TEST(CharStream, CarriesTypesThatSpecialiseTheForm)
{
    const std::string stream = toStandardString(sample::Pair{QStringLiteral("a"), 7});
    EXPECT_EQ(stream, bytes("\x01\0\0\0a\0\x07\0\0\0"));
    const char *cursor = stream.data();
    sample::Pair pair;
    EXPECT_FALSE(fromCharStream(&cursor, stream.data() + 9, pair));
    EXPECT_TRUE(pair.first.isNull());
    EXPECT_EQ(fromCharStream<sample::Pair>(&cursor).second, 7);
    EXPECT_EQ(cursor, stream.data() + stream.size());
}
} // namespace

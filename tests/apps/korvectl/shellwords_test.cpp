#include "apps/korvectl/shellwords.h"

#include <gmock/gmock.h>

using korvectl::quotedForShell;
using korvectl::shellWords;
using korvectl::unquoted;

namespace
{

struct LineCase {
    const char *name;
    const char *line;
    QStringList words;
};

class TypedLine : public testing::TestWithParam<LineCase>
{
};

} // namespace

TEST_P(TypedLine, IsTakenApartAsByAShell)
{
    EXPECT_EQ(shellWords(QString::fromUtf8(GetParam().line)), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, TypedLine,
    testing::Values(LineCase{"Empty", "", {QString()}}, LineCase{"OneWord", "a", {QStringLiteral("a")}},
                    LineCase{"BlanksBetween", "a \t b", {QStringLiteral("a"), QStringLiteral("b")}},
                    LineCase{"BlankAtEnd", "a ", {QStringLiteral("a"), QString()}},
                    LineCase{"Backslash", "a b\\ c", {QStringLiteral("a"), QStringLiteral("b c")}},
                    LineCase{"BackslashAtEnd", "a b\\", {QStringLiteral("a"), QStringLiteral("b")}},
                    LineCase{"OpenQuotation", "a \"b c", {QStringLiteral("a"), QStringLiteral("b c")}},
                    LineCase{
                        "ClosedQuotation", "a 'b \\'\"\\x\\$\"d", {QStringLiteral("a"), QStringLiteral("b \\\\x$d")}},
                    LineCase{"Umlaut", "a K\xc3\xb6", {QStringLiteral("a"), QStringLiteral("K\u00f6")}}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(TypedWord, MayHaveBlanksInAnOpenQuotation)
{
    EXPECT_EQ(unquoted(QStringLiteral("/a b")), QLatin1String("/a b"));
    EXPECT_EQ(unquoted(QStringLiteral("/a\\ b")), QLatin1String("/a b"));
    EXPECT_EQ(unquoted(QString()), QString());
}

TEST(ShellWords, QuotesWhatAShellWouldTakeApart)
{
    EXPECT_EQ(quotedForShell(QStringLiteral("R20261121-1:2/3@x")), QLatin1String("R20261121-1:2/3@x"));
    for (const char *const text : {"", "two words", "it's", "a\"b", "$(x)", "back\\slash", "a;b"})
        EXPECT_EQ(shellWords(quotedForShell(QLatin1String(text))), QStringList{QLatin1String(text)}) << text;
}

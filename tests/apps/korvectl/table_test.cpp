#include "apps/korvectl/table.h"

#include <gmock/gmock.h>

using korvectl::Table;

TEST(Table, AlignsItsColumns)
{
    Table table({{QStringLiteral("NAME")}, {QStringLiteral("SIZE"), Qt::AlignRight}, {QStringLiteral("TEXT")}});
    table.addRow({QStringLiteral("longer"), QStringLiteral("1"), QStringLiteral("a")});
    table.addRow({QStringLiteral("b"), QStringLiteral("12345"), QString()});
    EXPECT_EQ(table.text().toStdString(), "NAME     SIZE  TEXT\n"
                                          "longer      1  a\n"
                                          "b       12345\n");
}

TEST(Table, HasItsTitlesWithoutRows)
{
    EXPECT_EQ(Table({{QStringLiteral("A")}, {QStringLiteral("B")}}).text().toStdString(), "A  B\n");
}

TEST(Table, LetsNoTextMoveTheCursor)
{
    Table table({{QStringLiteral("A")}});
    table.addRow({QStringLiteral("x\n\x1b[2Jy\u202e")});
    EXPECT_EQ(table.text().toStdString(), "A\nx??[2Jy?\n");
}

TEST(Table, LeavesLettersTogetherThatAreJoined)
{
    const QString family = QStringLiteral("\U0001f468\u200d\U0001f469\u200d\U0001f467");
    EXPECT_EQ(Table({{QStringLiteral("A")}}).line({family}), family + u'\n');
}

TEST(Table, AlignsLettersOfAllWidths)
{
    Table table({{QStringLiteral("A")}, {QStringLiteral("B")}});
    table.addRow({QStringLiteral("K\u00f6ln"), QStringLiteral("composed")});
    table.addRow({QStringLiteral("Ko\u0308ln"), QStringLiteral("of two parts")});
    table.addRow({QStringLiteral("\u6771\u4eac"), QStringLiteral("two wide ones")});
    EXPECT_EQ(table.text(), QStringLiteral("A     B\n"
                                           "K\u00f6ln  composed\n"
                                           "Ko\u0308ln  of two parts\n"
                                           "\u6771\u4eac  two wide ones\n"));
}

TEST(Table, DrawsFurtherLinesAsWideAsItIs)
{
    Table table({{QStringLiteral("A"), Qt::AlignLeft, 4}, {QStringLiteral("B")}});
    EXPECT_EQ(table.line({QStringLiteral("x\n"), QStringLiteral("y")}).toStdString(), "x?    y\n");
    EXPECT_EQ(table.line({QStringLiteral("longer"), QStringLiteral("y")}).toStdString(), "longer  y\n");
    EXPECT_EQ(table.text().toStdString(), "A     B\n");
}

TEST(Table, CutsWhatMayBeCutToTheWidthOfATerminal)
{
    Table table({{QStringLiteral("ID")}, {.title = QStringLiteral("NAME"), .mayBeCut = true}, {QStringLiteral("S")}});
    table.addRow({QStringLiteral("1"), QStringLiteral("Harbour and coast"), QStringLiteral("a")});
    table.addRow({QStringLiteral("2"), QString(9, QChar(0x6771)), QStringLiteral("b")});
    const QString wide = QString(3, QChar(0x6771));
    EXPECT_EQ(table.text(17), QStringLiteral("ID  NAME        S\n1   Harbour...  a\n2   %1...   b\n").arg(wide));
    EXPECT_TRUE(table.text(5).contains(QLatin1String("Harbo...  a"))) << "something is left of it";
    EXPECT_TRUE(table.text().contains(QLatin1String("Harbour and coast   a")));
    EXPECT_EQ(table.text(200), table.text());
}

TEST(Table, CutsFurtherLinesToo)
{
    Table table({{QStringLiteral("A"), Qt::AlignLeft, 4}, {.title = QStringLiteral("B"), .mayBeCut = true}});
    const QString name = QStringLiteral("Harbour and coast");
    EXPECT_EQ(table.line({QStringLiteral("x"), name}, 16), QStringLiteral("x     Harbour...\n"));
    EXPECT_EQ(table.line({QStringLiteral("x"), name}), QStringLiteral("x     Harbour and coast\n"));
}

TEST(Table, MayHaveManyRows)
{
    constexpr int many = 100'000; // would take hours, were each row compared with each
    Table table({{QStringLiteral("A")}, {QStringLiteral("B")}});
    for (int row = 0; row < many; ++row)
        table.addRow({QString::number(row), QStringLiteral("b")});
    EXPECT_EQ(table.text().count(u'\n'), many + 1);
    EXPECT_TRUE(table.text().endsWith(QLatin1String("\n99999  b\n")));
}

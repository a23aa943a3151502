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

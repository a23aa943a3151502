#include "apps/korvectl/treerow.h"

#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <QJsonDocument>

#include <gmock/gmock.h>

using korvectl::TreeRow;

namespace
{

template <typename T> std::string jsonOf(const T &value)
{
    const QJsonValue content = TreeRow(value).object()[QStringLiteral("value")];
    return QJsonDocument(QJsonObject{{QStringLiteral("v"), content}}).toJson(QJsonDocument::Compact).toStdString();
}

template <typename Value, typename Content> std::string jsonWith(const Content &content)
{
    Value value;
    value.SetValue(content, nullptr);
    return jsonOf(value);
}

} // namespace

TEST(TreeRow, HasTheContentInTheTypeOfTheValue)
{
    EXPECT_EQ(jsonWith<values::Value<bool>>(true), R"({"v":true})");
    EXPECT_EQ(jsonWith<values::Value<int>>(-3), R"({"v":-3})");
    EXPECT_EQ(jsonWith<values::Value<unsigned>>(4294967295u), R"({"v":4294967295})");
    EXPECT_EQ(jsonWith<values::ValueNumeric<qint64>>(qint64{-9007199254740992}), R"({"v":-9007199254740992})");
    EXPECT_EQ(jsonWith<values::ValueNumeric<qint64>>(qint64{9007199254740993}), R"({"v":"9007199254740993"})");
    EXPECT_EQ(jsonWith<values::ValueNumeric<double>>(2.5), R"({"v":2.5})");
    EXPECT_EQ(jsonWith<values::Value<QString>>(QStringLiteral("K\u00f6ln \"x\"")), R"({"v":"Köln \"x\""})");
}

TEST(TreeRow, HasTheTextOfASelection)
{
    values::ValueSelection selection;
    selection.setTexts({QStringLiteral("idle"), QStringLiteral("busy")}, nullptr);
    selection.selectKey(1, nullptr);
    EXPECT_EQ(jsonOf(selection), R"({"v":"busy"})");
    EXPECT_EQ(TreeRow(selection).type, selection.GetTypeName());
}

TEST(TreeRow, HasTheStateInWords)
{
    using korvectl::wordsFor;
    EXPECT_EQ(wordsFor(values::ValueStateValid), QLatin1String("valid"));
    EXPECT_EQ(wordsFor(values::ValueStateDeleted), QLatin1String("deleted"));
    EXPECT_EQ(wordsFor(values::ValueStateSeeded), QLatin1String("seeded"));
    EXPECT_EQ(wordsFor(values::ValueStateConnectionLost), QLatin1String("connection lost"));
    EXPECT_EQ(wordsFor(static_cast<values::TValueState>(7)), QLatin1String("unknown state 7"));
}

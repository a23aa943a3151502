#include "apps/korvectl/followreport.h"

#include <gmock/gmock.h>

#include <QJsonDocument>

using namespace korvectl;

namespace
{

constexpr quint64 atUs = 1'700'000'000'250'000;

KORVE_XML::KORVE_RecordData record()
{
    KORVE_XML::KORVE_RecordData record;
    record.SetRecordID(QStringLiteral("R1"));
    record.SetRecordName(QStringLiteral("dawn"));
    return record;
}

Listing listing()
{
    const DeviceState device{QStringLiteral("REC1"), QStringLiteral("127.1.2.3"), QStringLiteral("K1"), true};
    return {{device}, {{QStringLiteral("REC1"), record()}}};
}

QVector<QJsonObject> objects(const QString &lines)
{
    QVector<QJsonObject> parsed;
    for (const QString &line : lines.split(u'\n', Qt::SkipEmptyParts))
        parsed << QJsonDocument::fromJson(line.toUtf8()).object();
    return parsed;
}

struct EventCase {
    const char *name;
    ConnectionEvent event;
    const char *text;
    const char *json;
};

class Event : public testing::TestWithParam<EventCase>
{
};

TEST_P(Event, IsALineForPeopleAndOneForPrograms)
{
    EXPECT_EQ(eventText(GetParam().event).toStdString(), GetParam().text);
    EXPECT_EQ(eventJson(GetParam().event).toStdString(), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Connections, Event,
    testing::Values(
        EventCase{"First", {QStringLiteral("Main"), atUs}, "2023-11-14 22:13:20 UTC: connected to the recorder manager of Main\n",
                  "{\"at\":\"2023-11-14T22:13:20.250Z\",\"event\":\"connected\",\"subsystem\":\"Main\"}\n"},
        EventCase{"Loss", {QStringLiteral("Main"), atUs, false},
                  "2023-11-14 22:13:20 UTC: the recorder manager of Main is lost; waiting for it\n",
                  "{\"at\":\"2023-11-14T22:13:20.250Z\",\"event\":\"lost\",\"subsystem\":\"Main\"}\n"},
        EventCase{"Return", {QStringLiteral("%2"), atUs, true, std::chrono::milliseconds(1450)},
                  "2023-11-14 22:13:20 UTC: the recorder manager of %2 is back after 1.4 s\n",
                  "{\"at\":\"2023-11-14T22:13:20.250Z\",\"awayMs\":1450,\"event\":\"connected\",\"subsystem\":\"%2\"}\n"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(FollowedListing, HasBothTablesAndTheirSizes)
{
    const QStringList lines = listingText(listing()).split(u'\n');
    ASSERT_EQ(lines.size(), 9);
    EXPECT_TRUE(lines[1].startsWith(QLatin1String("DEVICE  ADDRESS")));
    EXPECT_TRUE(lines[5].startsWith(QLatin1String("REC1    R1      dawn")));
    EXPECT_EQ(lines[7], QLatin1String("1 device, 1 record"));
    EXPECT_TRUE(listingText({}).endsWith(QLatin1String("\n0 devices, 0 records\n")));
}

TEST(FollowedListing, IsAnObjectALineForPrograms)
{
    const QVector<QJsonObject> parsed = objects(listingJson(listing()));
    ASSERT_EQ(parsed.size(), 3);
    const auto isLine = [&](int line, const char *event, const char *key, const QJsonValue &value) {
        return parsed[line][QStringLiteral("event")] == QLatin1String(event) && parsed[line][QLatin1String(key)] == value;
    };
    EXPECT_TRUE(isLine(0, "device", "device", QStringLiteral("REC1")));
    EXPECT_TRUE(isLine(1, "record", "record", QStringLiteral("R1")));
    EXPECT_TRUE(isLine(2, "listed", "records", 1));
    EXPECT_TRUE(isLine(2, "listed", "devices", 1));
}

} // namespace

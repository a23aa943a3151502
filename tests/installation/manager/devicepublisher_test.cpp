#include "installation/manager/devicepublisher.h"

#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/tree.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <thread>

using namespace installation;
using values::Tree;

namespace
{

Device device(const char *id, bool available)
{
    Device made;
    made.id = QLatin1String(id);
    made.available = available;
    made.status = {QStringLiteral("KRV#R100#1_1"), 2000000000, 500000000, 7};
    return made;
}

QString textAt(const char *path)
{
    const values::ValueBase *const value = Tree::Instance().findValue(QLatin1String(path));
    return value ? value->GetStringValue() : QStringLiteral("no such value");
}

template <typename Class> const Class *valueAt(const char *path)
{
    return dynamic_cast<const Class *>(Tree::Instance().findValue(QLatin1String(path)));
}

/// Notes, with each change, what status of the device is there.
class AvailabilityObserver : public IObserver
{
public:
    void Update(Observable *, TChangeCode) override
    {
        seen << textAt("/KORVE/Device/A/Status/Version/FirmwareVersion");
    }
    QStringList seen;
};

} // namespace

TEST(DevicePublisher, TellsOfARecordAlsoTwice)
{
    DevicePublisher publisher;
    publisher.publish({device("A", true)});
    AvailabilityObserver observer;
    values::ValueBase *const told =
        values::Tree::Instance().findValue(QStringLiteral("/KORVE/Device/A/OneRecordHasChanged"));
    ASSERT_TRUE(told);
    told->AddObserver(&observer);
    publisher.tellRecord(QStringLiteral("A"), QStringLiteral("R1"));
    publisher.tellRecord(QStringLiteral("A"), QStringLiteral("R1"));
    publisher.tellRecord(QStringLiteral("B"), QStringLiteral("R2"));
    EXPECT_EQ(textAt("/KORVE/Device/A/OneRecordHasChanged"), QLatin1String("R1"));
    EXPECT_EQ(observer.seen.size(), 2);
    told->DeleteObserver(&observer);
}

TEST(DevicePublisher, ShowsADeviceWhateverItIsCalled)
{
    DevicePublisher publisher;
    publisher.publish({device("R@%1%2\"'", true)});
    EXPECT_EQ(textAt("/KORVE/Device/R@%1%2\"'/Status/Version/FirmwareVersion"), QLatin1String("KRV#R100#1_1"));
    publisher.tellRecord(QStringLiteral("R@%1%2\"'"), QStringLiteral("%1"));
    EXPECT_EQ(textAt("/KORVE/Device/R@%1%2\"'/OneRecordHasChanged"), QLatin1String("%1"));
}

TEST(DevicePublisher, HearsOfRecordsOnOtherThreads)
{
    DevicePublisher publisher;
    publisher.publish({device("A", true)});
    std::thread([listener = publisher.recordListener()] {
        listener(QStringLiteral("A"), QStringLiteral("R1"));
    }).join();
    EXPECT_EQ(textAt("/KORVE/Device/A/OneRecordHasChanged"), QString());
    EXPECT_TRUE(
        QTest::qWaitFor([] { return textAt("/KORVE/Device/A/OneRecordHasChanged") == QLatin1String("R1"); }, 5000));
}

TEST(DevicePublisher, ShowsADevice)
{
    DevicePublisher publisher;
    publisher.publish({device("A", true)});
    ASSERT_TRUE(valueAt<values::Value<bool>>("/KORVE/Device/A/KorveAvailable"));
    EXPECT_TRUE(valueAt<values::Value<bool>>("/KORVE/Device/A/KorveAvailable")->GetValue());
    ASSERT_TRUE(valueAt<values::Value<bool>>("/KORVE/Device/A/Admin/IsVirtual"));
    EXPECT_FALSE(valueAt<values::Value<bool>>("/KORVE/Device/A/Admin/IsVirtual")->GetValue());
    ASSERT_TRUE(valueAt<values::Value<double>>("/KORVE/Device/A/Status/DiscSpace/GBTotal"));
    EXPECT_EQ(valueAt<values::Value<double>>("/KORVE/Device/A/Status/DiscSpace/GBTotal")->GetValue(), 2.0);
    EXPECT_EQ(valueAt<values::Value<double>>("/KORVE/Device/A/Status/DiscSpace/GBAvailable")->GetValue(), 0.5);
    EXPECT_EQ(valueAt<values::ValueNumeric<int>>("/KORVE/Device/A/Records/LoadCount")->GetValue(), 7);
    EXPECT_EQ(textAt("/KORVE/Device/A/Status/Version/FirmwareVersion"), QLatin1String("KRV#R100#1_1"));
}

TEST(DevicePublisher, KeepsWhatIsKnownOfADeviceThatIsNotAvailable)
{
    DevicePublisher publisher;
    publisher.publish({device("A", true)});
    publisher.publish({device("A", false)});
    EXPECT_FALSE(valueAt<values::Value<bool>>("/KORVE/Device/A/KorveAvailable")->GetValue());
    EXPECT_EQ(textAt("/KORVE/Device/A/Status/Version/FirmwareVersion"), QLatin1String("KRV#R100#1_1"));
}

TEST(DevicePublisher, SetsTheStatusBeforeTheDeviceBecomesAvailable)
{
    DevicePublisher publisher;
    Device silent = device("A", false);
    silent.status = {};
    publisher.publish({silent});
    AvailabilityObserver observer;
    values::ValueBase *const available = Tree::Instance().findValue(QStringLiteral("/KORVE/Device/A/KorveAvailable"));
    available->AddObserver(&observer);
    publisher.publish({device("A", true)});
    available->DeleteObserver(&observer);
    EXPECT_EQ(observer.seen, QStringList(QStringLiteral("KRV#R100#1_1")));
}

TEST(DevicePublisher, TakesAwayWhatIsNotThere)
{
    {
        DevicePublisher publisher;
        publisher.publish({device("A", true), device("B", true)});
        publisher.publish({device("B", true)});
        EXPECT_FALSE(Tree::Instance().findNode(QStringLiteral("/KORVE/Device/A")));
        EXPECT_TRUE(Tree::Instance().findNode(QStringLiteral("/KORVE/Device/B")));
    }
    EXPECT_FALSE(Tree::Instance().findNode(QStringLiteral("/KORVE/Device/B")));
}

TEST(DevicePublisher, TakesListsFromOtherThreads)
{
    DevicePublisher publisher;
    std::thread([listener = publisher.listener()] { listener({device("A", true)}); }).join();
    EXPECT_TRUE(
        QTest::qWaitFor([] { return textAt("/KORVE/Device/A/KorveAvailable") != QLatin1String("no such value"); }));
}

TEST(DevicePublisher, IsNotMissedByItsListeners)
{
    std::function<void(const DeviceList &)> listener;
    {
        DevicePublisher publisher;
        listener = publisher.listener();
    }
    listener({device("A", true)});
    QCoreApplication::processEvents();
    EXPECT_FALSE(Tree::Instance().findNode(QStringLiteral("/KORVE/Device/A")));
}

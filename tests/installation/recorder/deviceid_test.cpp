#include "installation/recorder/deviceid.h"
#include "installation/recorder/recordererror.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace installation::recorder;

namespace
{

class DeviceId : public testing::Test
{
protected:
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QString idAt(const char *address) const { return deviceIdOf(folder.path(), QLatin1String(address)); }

    const QTemporaryDir folder;
};

TEST_F(DeviceId, IsThatOfTheHostAtFirst)
{
    EXPECT_EQ(idAt("192.0.2.1"), QLatin1String("KORVE-192.0.2.1"));
    EXPECT_EQ(idAt("192.0.2.2"), QLatin1String("KORVE-192.0.2.2"));
}

TEST_F(DeviceId, StaysWhenTheAddressChanges)
{
    keepDeviceId(folder.path(), idAt("192.0.2.1"));
    EXPECT_EQ(idAt("192.0.2.2"), QLatin1String("KORVE-192.0.2.1"));
    keepDeviceId(folder.path(), QStringLiteral("OTHER"));
    EXPECT_EQ(idAt("192.0.2.2"), QLatin1String("OTHER"));
}

TEST_F(DeviceId, IsTheFormerDefaultForRecordingsThatHaveNone)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("recordings")));
    EXPECT_EQ(idAt("192.0.2.1"), QLatin1String("KORVE-192.0.2.1"));
    write("recordings/R1.sigmf-meta", "{}");
    EXPECT_EQ(idAt("192.0.2.1"), QLatin1String("KORVE1"));
}

TEST_F(DeviceId, IsNotGuessedFromADamagedFile)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("two words\n"), QByteArray("a/b"), QByteArray(2000, 'x')}) {
        write("device", bytes);
        EXPECT_THROW(idAt("192.0.2.1"), RecorderError) << bytes.left(20).toStdString();
    }
    keepDeviceId(folder.path(), QStringLiteral("KORVE7"));
    EXPECT_EQ(idAt("192.0.2.1"), QLatin1String("KORVE7"));
}

} // namespace

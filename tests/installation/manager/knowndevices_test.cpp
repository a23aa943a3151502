#include "installation/manager/knowndevices.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using installation::KnownDevices;

namespace
{

class KnownDevicesTest : public testing::Test
{
protected:
    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }
    void writeFile(const QByteArray &bytes)
    {
        QFile file(path("devices.sqlite"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir folder;
    const KnownDevices::AddressById devices{{QStringLiteral("A"), QStringLiteral("10.0.0.1")},
                                            {QStringLiteral("B's"), QString("")}};
};

} // namespace

TEST_F(KnownDevicesTest, BeginEmpty)
{
    EXPECT_TRUE(KnownDevices(path("new/folder")).load().isEmpty());
}

TEST_F(KnownDevicesTest, AreThereAgain)
{
    KnownDevices(folder.path()).save(devices);
    EXPECT_EQ(KnownDevices(folder.path()).load(), devices);
}

TEST_F(KnownDevicesTest, AreReplacedByWhatIsSaved)
{
    const KnownDevices known(folder.path());
    known.save({{QStringLiteral("C"), QStringLiteral("10.0.0.3")}});
    known.save(devices);
    EXPECT_EQ(known.load(), devices);
}

TEST_F(KnownDevicesTest, PutADamagedFileAside)
{
    writeFile(QByteArray(5000, 'x'));
    KnownDevices(folder.path()).save(devices);
    EXPECT_EQ(KnownDevices(folder.path()).load(), devices);
    EXPECT_EQ(QFile(path("devices.sqlite.refused")).size(), 5000);
}

TEST_F(KnownDevicesTest, PutATruncatedFileAside)
{
    KnownDevices(folder.path()).save(devices);
    ASSERT_TRUE(QFile::resize(path("devices.sqlite"), 100));
    EXPECT_TRUE(KnownDevices(folder.path()).load().isEmpty());
    EXPECT_TRUE(QFile::exists(path("devices.sqlite.refused")));
}

TEST_F(KnownDevicesTest, NameTheFolderThatCannotBeUsed)
{
    writeFile("a file");
    const QString below = path("devices.sqlite/folder");
    try {
        const KnownDevices known(below);
        FAIL() << "it was accepted";
    } catch (const std::runtime_error &error) {
        EXPECT_THAT(error.what(), testing::HasSubstr(below.toStdString()));
    }
}

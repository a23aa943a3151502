#include "apps/korvectl/exportfolder.h"
#include "apps/korvectl/failure.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

const QString data = QStringLiteral("R1.sigmf-data");
const QString meta = QStringLiteral("R1.sigmf-meta");

class Folder : public testing::Test
{
protected:
    static void write(const QString &path, int size)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, 'x')) != size)
            throw std::runtime_error("cannot write " + path.toStdString());
    }

    const QTemporaryDir place;
    const ExportFolder folder{place.filePath(QStringLiteral("new/folder"))};
};

} // namespace

TEST_F(Folder, KnowsHowMuchIsThere)
{
    EXPECT_EQ(folder.bytesThere(data, 10), 0u);
    write(folder.partPath(data), 4);
    EXPECT_EQ(folder.bytesThere(data, 10), 4u);
    EXPECT_EQ(folder.bytesThere(data, 4), 0u) << "another file than that which is asked for";
    write(folder.path(data), 10);
    EXPECT_FALSE(folder.bytesThere(data, 10));
    EXPECT_EQ(folder.bytesThere(data, 11), 4u);
}

TEST_F(Folder, TakesLinksForNothing)
{
    const QString elsewhere = place.filePath(QStringLiteral("elsewhere"));
    write(elsewhere, 4);
    ASSERT_TRUE(QFile::link(elsewhere, folder.partPath(data)));
    ASSERT_TRUE(QFile::link(elsewhere, folder.path(data)));
    EXPECT_EQ(folder.bytesThere(data, 10), 0u);
    EXPECT_EQ(folder.bytesThere(data, 4), 0u);
}

TEST_F(Folder, IsOfOneExportAtATime)
{
    const QString path = place.filePath(QStringLiteral("new/folder"));
    EXPECT_THROW(ExportFolder{path}, Failure);
    EXPECT_NO_THROW(ExportFolder{place.filePath(QStringLiteral("another"))});
}

TEST_F(Folder, KnowsTheChecksumThatADescriptionTells)
{
    EXPECT_EQ(folder.toldChecksum(meta), QByteArray());
    QFile file(folder.path(meta));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"global": {"core:sha512": "0aff"}})");
    file.close();
    EXPECT_EQ(folder.toldChecksum(meta), QByteArray("\x0a\xff"));
}

TEST_F(Folder, FinishesOnlyWhatIsWhole)
{
    EXPECT_FALSE(folder.finish(data, 10));
    EXPECT_FALSE(folder.finish(data, 0));
    write(folder.partPath(data), 9);
    EXPECT_FALSE(folder.finish(data, 10));
    write(folder.partPath(data), 10);
    write(folder.path(data), 3); // of an earlier export
    EXPECT_TRUE(folder.finish(data, 10));
    EXPECT_EQ(QFileInfo(folder.path(data)).size(), 10);
    EXPECT_FALSE(QFileInfo::exists(folder.partPath(data)));
}

TEST_F(Folder, LetsNoNameLeadElsewhere)
{
    for (const char *const name : {"", ".", "..", "../x", "a/b", "/etc/passwd", ".hidden"})
        EXPECT_THROW(folder.path(QLatin1String(name)), Failure) << name;
}

TEST_F(Folder, CannotBeWhereAFileIs)
{
    write(place.filePath(QStringLiteral("file")), 1);
    EXPECT_THROW(ExportFolder(place.filePath(QStringLiteral("file/below"))), Failure);
}

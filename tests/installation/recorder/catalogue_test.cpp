#include "installation/recorder/catalogue.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace installation::recorder;

namespace
{

// The first rows of a damaged file are there, and what follows must not look like the end of them.
TEST(Catalogue, TakesNoDamageForTheEnd)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath("catalogue.sqlite");
    {
        Catalogue catalogue(path);
        catalogue.begin();
        for (int number = 0; number < 500; ++number) {
            Record record = fullRecord(QStringLiteral("name"));
            record.id = QStringLiteral("R%1").arg(number);
            catalogue.put(record, {});
        }
        catalogue.commit();
        ASSERT_EQ(catalogue.stamps().size(), 500);
    }
    QByteArray bytes = readFile(path);
    std::fill(bytes.begin() + bytes.size() / 2, bytes.end(), '\x55');
    writeFile(path, bytes);
    const Catalogue damaged(path);
    EXPECT_THROW(damaged.stamps(), Catalogue::Error);
    EXPECT_THROW(damaged.records(), Catalogue::Error);
}

} // namespace

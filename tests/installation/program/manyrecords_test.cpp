#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>

using ManyRecords = InstallationFixture;

namespace
{

constexpr int copyCount = 20000;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

/// Puts more records beside the only one of a recorder that does not run.
void multiplyTheRecord(const QString &folder)
{
    const QDir records(folder);
    const QString id = records.entryList({QStringLiteral("*.sigmf-meta")}).value(0).section(u'.', 0, 0);
    const QByteArray meta = contentOf(records.filePath(id + QLatin1String(".sigmf-meta")));
    const QByteArray data = contentOf(records.filePath(id + QLatin1String(".sigmf-data")));
    for (int number = 0; number < copyCount; ++number) {
        const QString copy = QStringLiteral("R%1").arg(number);
        writeFile(records.filePath(copy + QLatin1String(".sigmf-data")), data);
        writeFile(records.filePath(copy + QLatin1String(".sigmf-meta")),
                  QByteArray(meta).replace(id.toLatin1(), copy.toLatin1()));
    }
}

} // namespace

// More than the ORB's own limit of a message holds, on the way to the manager and on the way to its client.
TEST_F(ManyRecords, ComeInOneList)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    ASSERT_EQ(import({writeWavFile(shared->folder.path(),
                                   QStringLiteral("one of the many recordings of a long day.wav"), 10)})
                  .exitCode,
              0);
    ASSERT_EQ(shared->recorder->end(), 0);
    multiplyTheRecord(filePath("recorder/recordings"));
    shared->recorder = start("recorder");
    const auto hasAll = [] {
        try {
            return recordIds().size() == copyCount + 1;
        } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &) { // the manager has not found the new recorder yet
            return false;
        }
    };
    EXPECT_TRUE(QTest::qWaitFor(hasAll, patienceMs));
}

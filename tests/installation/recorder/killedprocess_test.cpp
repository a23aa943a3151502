#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <random>

using namespace installation::recorder;

namespace
{

/// What the recorder has told: the name of each record, and the step it was at.
struct Told {
    QMap<QString, QString> names;
    QStringList underWay; ///< words of the step that was begun and not done

    void hear(const QString &line)
    {
        const QStringList words = line.split(' ');
        underWay = words.at(0) == "try" ? words.mid(1) : QStringList();
        if (words.at(0) == "try")
            return;
        if (words.at(1) == "remove")
            names.remove(words.at(2));
        else
            names[words.at(2)] = words.at(3);
    }
};

class KilledRecorder : public testing::Test
{
protected:
    /// Lets a recorder write, kills it after @p lines lines and @p furtherUs, and hears all that it said.
    void writeAndDie(int lines, int furtherUs)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(RECORDER_PROCESS, {"write", directory.path()});
        while (lines > 0) {
            ASSERT_TRUE(process.canReadLine() || process.waitForReadyRead(60'000)) << "the recorder is silent";
            for (; process.canReadLine(); --lines)
                hear(process.readLine());
        }
        for (QElapsedTimer clock = started(); clock.nsecsElapsed() < furtherUs * 1000LL;) {
            // a moment within a step, which no line of the recorder tells
        }
        process.kill();
        ASSERT_TRUE(process.waitForFinished(60'000));
        while (process.canReadLine())
            hear(process.readLine());
    }

    /// Every change that was acknowledged is there, and the one under way is done or not.
    void expectAcknowledged()
    {
        RecordStore store(directory.path());
        EXPECT_TRUE(store.refused().isEmpty()) << store.refused().first().reason.toStdString();
        QMap<QString, QString> found;
        for (const RecordSummary &summary : store.records()) {
            const Record record = store.record(summary.id);
            EXPECT_EQ(record.name, summary.name);
            found[record.id] = record.name;
            if (record.bookmarks.first().timestampUs == 1) {
                EXPECT_EQ(record.bookmarks.first().text, record.name);
            }
        }
        takeWhatWasUnderWay(found);
        EXPECT_EQ(found, told.names);
        EXPECT_EQ(contentOf(directory.filePath("recordings")).size(), 2 * found.size());
    }

private:
    static QElapsedTimer started()
    {
        QElapsedTimer clock;
        clock.start();
        return clock;
    }
    void hear(const QByteArray &line) { told.hear(QString::fromUtf8(line).trimmed()); }

    /// Either outcome of the step that was not answered is right; from here on it is what was found.
    void takeWhatWasUnderWay(const QMap<QString, QString> &found)
    {
        const QString step = told.underWay.value(0);
        const QString id = told.underWay.value(1);
        if (step == "add" && found.size() == told.names.size() + 1)
            for (auto record = found.begin(); record != found.end(); ++record)
                told.names.insert(record.key(), told.names.value(record.key(), record.value()));
        if (step == "remove" && !found.contains(id))
            told.names.remove(id);
        if (step == "change" && found.value(id) == told.underWay.value(2))
            told.names[id] = found.value(id);
    }

    QTemporaryDir directory;
    Told told;
};

TEST_F(KilledRecorder, KeepsEveryAcknowledgedChange)
{
    std::mt19937 random(7);
    for (int round = 0; round < 40 && !HasFailure(); ++round) {
        writeAndDie(1 + random() % 24, random() % 4000);
        expectAcknowledged();
    }
}

/// A recorder that is to do what @p arguments say, killed when the first samples of a new record have a name.
void killWithNewSamples(const QString &statePath, const QStringList &arguments)
{
    QProcess process;
    process.start(RECORDER_PROCESS, arguments);
    const QDir recordings(statePath + QLatin1String("/recordings"));
    const QDeadlineTimer end(60'000);
    while (recordings.entryList({"*.sigmf-data.part"}).isEmpty() && !end.hasExpired()) {
        // the recorder tells of it only when it is done
    }
    process.kill();
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_FALSE(recordings.entryList({"*.part"}).isEmpty()) << "it was faster";
}

TEST(KilledImport, LeavesTheOtherRecordsAndNothingElse)
{
    const QTemporaryDir directory;
    const QString statePath = directory.filePath("state");
    const QString id = storeRecord(*std::make_unique<RecordStore>(statePath), "first", "abcd");
    const auto before = contentOf(statePath + "/recordings");
    writeFile(directory.filePath("air.sigmf-meta"), sigmfMeta());
    QFile samples(directory.filePath("air.sigmf-data"));
    ASSERT_TRUE(samples.open(QIODevice::WriteOnly) && samples.resize(256 << 20)); // a hole: it takes no room

    killWithNewSamples(statePath, {"serve", statePath, directory.filePath("air.sigmf-meta")});
    RecordStore store(statePath);
    ASSERT_EQ(store.records().size(), 1);
    EXPECT_EQ(store.records().first().id, id);
    EXPECT_EQ(contentOf(statePath + "/recordings"), before);
}

/// A record of @p sizeBytes, all of it a hole that takes no room.
QString storeHole(RecordStore &store, quint64 sizeBytes)
{
    const RecordStore::Reservation place = store.reserve();
    writeFile(place.samplesPath, {});
    EXPECT_TRUE(QFile::resize(place.samplesPath, static_cast<qint64>(sizeBytes)));
    Record record = fullRecord("hole");
    record.id = place.id;
    record.sizeBytes = sizeBytes;
    store.adopt(record);
    return record.id;
}

TEST(KilledCopy, LeavesItsSourceAndNothingElse)
{
    const QTemporaryDir directory;
    const QString statePath = directory.filePath("state");
    const QString id = storeHole(*std::make_unique<RecordStore>(statePath), quint64(4) << 30);
    killWithNewSamples(statePath, {"copy", statePath, id});
    RecordStore store(statePath);
    ASSERT_EQ(store.records().size(), 1);
    EXPECT_EQ(store.record(id).name, "hole");
    EXPECT_TRUE(store.refused().isEmpty());
    EXPECT_EQ(QDir(statePath + "/recordings").entryList(QDir::Files | QDir::Hidden).size(), 2);
}

} // namespace

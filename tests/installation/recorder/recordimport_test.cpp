#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordimport.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QFile>

#include <future>
#include <utility>

using namespace installation::recorder;

namespace
{

class Import : public testing::Test
{
protected:
    QString foreign(const char *name, const QByteArray &bytes) const
    {
        writeFile(directory.filePath(name), bytes);
        return directory.filePath(name);
    }
    QString sigmf(const QByteArray &samples, const QJsonObject &global = {}) const
    {
        foreign("air.sigmf-data", samples);
        return foreign("air.sigmf-meta", sigmfMeta(global));
    }
    Record recordOf(const QString &id)
    {
        return store.ask([id](RecordStore &records) { return records.record(id); });
    }
    QByteArray samplesOf(const QString &id) const
    {
        return readFile(directory.filePath("state/recordings/" + id + ".sigmf-data"));
    }
    TQ_KORVE::eKorveKind kindOf(const QString &path, const ImportControl &control = {})
    {
        try {
            importFile(store, path, control);
        } catch (const RecorderError &error) {
            EXPECT_NE(error.text(), QString());
            return error.kind();
        }
        ADD_FAILURE() << "was taken";
        return TQ_KORVE::ekIMPLEMENTATION_FAULT;
    }
    void expectNothingStays()
    {
        EXPECT_EQ(store.ask([](RecordStore &records) { return records.records().size(); }), 0);
        EXPECT_TRUE(contentOf(directory.filePath("state/recordings")).isEmpty());
    }

    QTemporaryDir directory;
    StoreThread store{directory.filePath("state")};
};

TEST_F(Import, OfAWavFileKeepsTheSamplesByteForByte)
{
    const WavFile file;
    const QString id = importFile(store, foreign("tone.wav", file.bytes() + chunk("LIST", "behind")));
    EXPECT_EQ(samplesOf(id), file.samples);
    EXPECT_EQ(recordOf(id).name, "tone");
}

TEST_F(Import, OfASigmfPairKeepsSamplesAndMetaData)
{
    QByteArray samples(3 << 20, 0);
    for (int i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<char>(i * 2654435761u >> 24);
    const QString id = importFile(store, sigmf(samples));
    EXPECT_EQ(samplesOf(id), samples);
    EXPECT_EQ(recordOf(id).sigmf["global"].toObject()["other:antenna"].toString(), "loop");
}

TEST_F(Import, KeepsTheNumbersThatJsonHasExactly)
{
    constexpr double most = 9007199254740992.0; // 2^53
    const QString id = importFile(store, sigmf(QByteArray(4000, 's'), {{"other:count", most}}));
    EXPECT_TRUE(readFile(directory.filePath("state/recordings/" + id + ".sigmf-meta")).contains(": 9007199254740992\n"));
    EXPECT_EQ(recordOf(id).sigmf["global"].toObject()["other:count"].toDouble(), most);
}

TEST_F(Import, KeepsANameBeyondSixteenBits)
{
    const QString id = importFile(store, foreign("f\xC3\xBCr \xF0\x9F\x93\xBB.wav", WavFile{}.bytes()));
    EXPECT_EQ(recordOf(id).name, QString::fromUtf8("f\xC3\xBCr \xF0\x9F\x93\xBB"));
}

TEST_F(Import, OfARecordOfOursKeepsWhatWasNotedOfIt)
{
    const QString id = importFile(store, sigmf(QByteArray(4000, 's')));
    store.ask([id](RecordStore &records) {
        records.change(id, [](Record &record) {
            record.name = "named";
            record.bookmarks = {{7, "seven"}};
        });
    });
    const QString again = importFile(store, directory.filePath("state/recordings/" + id + ".sigmf-meta"));
    EXPECT_NE(again, id);
    EXPECT_EQ(recordOf(again).name, "named");
    EXPECT_EQ(recordOf(again).bookmarks, (QVector<Note>{{7, "seven"}}));
    EXPECT_EQ(recordOf(again).index, recordOf(id).index);
}

TEST_F(Import, TellsItsProgress)
{
    std::vector<std::pair<quint64, quint64>> told;
    const quint64 total = (2 << 20) + 4;
    importFile(store, sigmf(QByteArray(total, 's')),
               {[&](quint64 done, quint64 all) { told.emplace_back(done, all); }, {}});
    EXPECT_EQ(told, (std::vector<std::pair<quint64, quint64>>{{1 << 20, total}, {2 << 20, total}, {total, total}}));
}

TEST_F(Import, LeavesNothingWhenCancelled)
{
    std::stop_source source;
    const QString path = sigmf(QByteArray(3 << 20, 's'));
    const auto cancel = [&](quint64, quint64) { source.request_stop(); };
    EXPECT_EQ(kindOf(path, {cancel, source.get_token()}), TQ_KORVE::ekRECORD_CREATION_FAILED);
    expectNothingStays();
}

TEST_F(Import, LeavesNothingWhenTheProgressThrows)
{
    const QString path = sigmf(QByteArray(4000, 's'));
    const auto fail = [](quint64, quint64) { throw std::runtime_error("terminal gone"); };
    EXPECT_THROW(importFile(store, path, {fail, {}}), std::runtime_error);
    expectNothingStays();
}

TEST_F(Import, ComparesTheChecksum)
{
    const QByteArray samples(4000, 's');
    const QString right = QCryptographicHash::hash(samples, QCryptographicHash::Sha512).toHex();
    EXPECT_EQ(kindOf(sigmf(QByteArray(4000, 't'), {{"core:sha512", right}})), TQ_KORVE::ekRECORD_CORRUPTED);
    expectNothingStays();
    EXPECT_EQ(samplesOf(importFile(store, sigmf(samples, {{"core:sha512", right}}))), samples);
}

TEST_F(Import, NotesTheChecksumOfTheSamples)
{
    const QByteArray samples(4000, 's');
    const QString checksum = QCryptographicHash::hash(samples, QCryptographicHash::Sha512).toHex();
    const Record record = recordOf(importFile(store, sigmf(samples)));
    EXPECT_EQ(record.sigmf["global"]["core:sha512"].toString(), checksum);
}

TEST_F(Import, RefusesWhatTheDiskCannotHold)
{
    const QString path = sigmf({});
    if (!QFile(directory.filePath("air.sigmf-data")).resize(qint64(8) << 40)) // a hole, nothing is written
        GTEST_SKIP() << "this file system knows no files of 8 TiB";
    EXPECT_EQ(kindOf(path), TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
    expectNothingStays();
}

TEST_F(Import, LeavesNothingWhenTheDiskGetsFull)
{
    const QString path = sigmf(QByteArray(3 << 20, 's'));
    {
        const FullDisk fullDisk(2 << 20);
        EXPECT_EQ(kindOf(path), TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
    }
    expectNothingStays();
}

TEST_F(Import, LeavesNothingWhenOnlyTheSamplesFindRoom)
{
    const QString path = foreign("tone.wav", WavFile{}.bytes());
    {
        const FullDisk fullDisk(WavFile{}.samples.size());
        EXPECT_EQ(kindOf(path), TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
    }
    expectNothingStays();
}

TEST_F(Import, MayRunBesideAnother)
{
    const QByteArray samples(3 << 20, 'b');
    const QString path = sigmf(samples);
    const QString other = foreign("tone.wav", WavFile{}.bytes());
    QString otherId;
    bool hasBegun = false;
    const auto importOther = [&](quint64, quint64) { // in the midst of the first
        if (!std::exchange(hasBegun, true))
            otherId = std::async(std::launch::async, [&] { return importFile(store, other); }).get();
    };
    const QString id = importFile(store, path, {importOther, {}});
    EXPECT_EQ(samplesOf(id), samples);
    EXPECT_EQ(samplesOf(otherId), WavFile{}.samples);
    EXPECT_EQ(store.ask([](RecordStore &records) { return records.records().size(); }), 2);
}

TEST_F(Import, NoticesAFileThatShrinks)
{
    const QString path = sigmf(QByteArray(3 << 20, 's'));
    const auto shrink = [this](quint64, quint64) { QFile(directory.filePath("air.sigmf-data")).resize(4); };
    EXPECT_EQ(kindOf(path, {shrink, {}}), TQ_KORVE::ekRECORD_CORRUPTED);
    expectNothingStays();
}

} // namespace

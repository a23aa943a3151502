#include "installation/recorder/filetransfers.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordimport.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/receiver.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"
#include "tests/support/patience.h"

#include <gtest/gtest.h>

#include <QFile>

#include <sys/socket.h>

#include <future>

using namespace installation::recorder;

namespace
{

class Transfer : public testing::Test
{
protected:
    Transfer()
    {
        for (int i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<char>(i * 2654435761u >> 24);
        writeFile(directory.filePath("air.sigmf-data"), samples);
        writeFile(directory.filePath("air.sigmf-meta"), sigmfMeta());
        record = importFile(*store, directory.filePath("air.sigmf-meta"));
        files = transfers.list("export:" + record);
    }
    QString url(const RecordFile &file, quint64 offset, quint16 port) const
    {
        return QString("tcp://127.0.0.1:%1/%2?offset=%3&size=%4")
            .arg(port)
            .arg(file.name)
            .arg(offset)
            .arg(file.sizeBytes);
    }
    /// What a receiver gets, and how the recorder thinks that it went.
    std::pair<QByteArray, QString> transferred(const RecordFile &file, quint64 offset)
    {
        Receiver receiver;
        std::promise<QString> failure;
        transfers.start(record, url(file, offset, receiver.port()),
                        [&](const QString &text) { failure.set_value(text); });
        QByteArray bytes = receiver.takeAll();
        return {bytes, failure.get_future().get()};
    }

    QTemporaryDir directory;
    QByteArray samples{6 << 20, 0}; // more than a socket keeps
    const std::shared_ptr<StoreThread> store = std::make_shared<StoreThread>(directory.filePath("state"));
    FileTransfers transfers{store};
    QString record;
    QVector<RecordFile> files;
};

TEST_F(Transfer, BeginsWithTheListOfFiles)
{
    ASSERT_EQ(files.size(), 2);
    EXPECT_EQ(files[0].name, record + ".sigmf-meta");
    EXPECT_EQ(files[0].sizeBytes, quint64(readFile(files[0].path).size()));
    EXPECT_EQ(files[1].name, record + ".sigmf-data");
    EXPECT_EQ(files[1].sizeBytes, quint64(samples.size()));
    EXPECT_EQ(kindOf([&] { transfers.list("export:R0"); }), TQ_KORVE::ekINVALID_RECORD_ID);
    for (const char *device : {"", "export:", "sending:", "tape:R0", "R0"})
        EXPECT_EQ(kindOf([&] { transfers.list(device); }), TQ_KORVE::ekINVALID_VALUE) << device;
}

TEST_F(Transfer, BringsBothFilesByteForByte)
{
    EXPECT_EQ(transferred(files[0], 0), std::pair(readFile(files[0].path), QString()));
    EXPECT_EQ(transferred(files[1], 0), std::pair(samples, QString()));
}

TEST_F(Transfer, GoesOnWhereItWas)
{
    EXPECT_EQ(transferred(files[1], 1'000'001).first, samples.mid(1'000'001));
    EXPECT_EQ(transferred(files[1], samples.size()), std::pair(QByteArray(), QString()));
}

TEST_F(Transfer, ToAReceiverMayBeWaitedFor)
{
    Receiver receiver;
    std::future<QByteArray> taken = std::async(std::launch::async, [&] { return receiver.takeAll(); });
    transfers.send(record, url(files[1], 0, receiver.port()));
    EXPECT_EQ(taken.get(), samples);
}

TEST_F(Transfer, IsListedUntilItsEndHasBeenTold)
{
    Receiver receiver;
    const QString target = url(files[1], 1, receiver.port());
    std::promise<int> listed;
    transfers.start(record, target,
                    [&](const QString &) { listed.set_value(transfers.list("sending:" + record).size()); });
    const QVector<RecordFile> going = transfers.list("sending:" + record);
    ASSERT_EQ(going.size(), 1);
    EXPECT_EQ(going[0].name, target);
    EXPECT_EQ(going[0].sizeBytes, quint64(samples.size() - 1));
    EXPECT_TRUE(transfers.list("sending:R0").isEmpty());
    receiver.takeAll();
    EXPECT_EQ(listed.get_future().get(), 1);
    transfers.stop();
    EXPECT_TRUE(transfers.list("sending:" + record).isEmpty());
}

TEST_F(Transfer, IsRefusedWhenTheRecordHasChanged)
{
    const QString before = url(files[0], 0, deafPort());
    store->ask(
        [this](RecordStore &records) { records.change(record, [](Record &record) { record.name = "another name"; }); });
    EXPECT_EQ(kindOf([&] { transfers.send(record, before); }), TQ_KORVE::ekRECORD_ACCESS_FAILED);
}

TEST_F(Transfer, NeedsSomebodyWhoListens)
{
    EXPECT_EQ(kindOf([&] { transfers.send(record, url(files[0], 0, deafPort())); }), TQ_KORVE::ekCONNECTION_FAILURE);
    EXPECT_EQ(kindOf([&] { transfers.send("R0", url(files[0], 0, deafPort())); }), TQ_KORVE::ekINVALID_RECORD_ID);
}

TEST_F(Transfer, FailsWithAReceiverThatGoesOrTakesNothing)
{
    // A slow machine must not make other transfers fail, so the others have the usual limits.
    FileTransfers hasty(
        store, {std::chrono::milliseconds(2000), std::chrono::milliseconds(200), std::chrono::milliseconds(200)});
    Receiver receiver;
    std::promise<QString> gone;
    hasty.start(record, url(files[1], 0, receiver.port()), [&](const QString &text) { gone.set_value(text); });
    receiver.accept();
    EXPECT_NE(gone.get_future().get(), "");
    std::promise<QString> stalled;
    hasty.start(record, url(files[1], 0, receiver.port()), [&](const QString &text) { stalled.set_value(text); });
    const Descriptor connection = receiver.accept();
    EXPECT_NE(stalled.get_future().get(), "");
}

TEST_F(Transfer, EndsAtOnceWithTheRecorder)
{
    FileTransfers patient(store, {std::chrono::seconds(2), std::chrono::hours(1), std::chrono::hours(1)});
    Receiver receiver;
    std::promise<QString> ended;
    patient.start(record, url(files[1], 0, receiver.port()), [&](const QString &text) { ended.set_value(text); });
    const Descriptor connection = receiver.accept();
    Patience patience(std::chrono::seconds(30), [&] { ::shutdown(connection.get(), SHUT_RDWR); });
    patient.stop();
    patience.end();
    EXPECT_FALSE(patience.isOver());
    EXPECT_NE(ended.get_future().get(), "");
}

TEST_F(Transfer, EndsWithTheRecorderAlsoWhileItWaitsForItsReceiverToClose)
{
    FileTransfers patient(store, {std::chrono::seconds(2), std::chrono::hours(1), std::chrono::hours(1)});
    Receiver receiver;
    std::promise<QString> ended;
    patient.start(record, url(files[0], 0, receiver.port()), [&](const QString &text) { ended.set_value(text); });
    const Descriptor connection = receiver.accept();
    for (char byte = 0; ::recv(connection.get(), &byte, 1, 0) > 0;)
        continue; // up to the end of the file
    Patience patience(std::chrono::seconds(30), [&] { ::shutdown(connection.get(), SHUT_RDWR); });
    patient.stop();
    patience.end();
    EXPECT_FALSE(patience.isOver());
    ended.get_future().get();
}

TEST(TransferTarget, IsTakenApart)
{
    const TransferTarget target =
        TransferTarget::ofUrl("tcp://127.0.0.1:4711/a%20b.sigmf-data?offset=12&size=18446744073709551615");
    EXPECT_EQ(target.host, "127.0.0.1");
    EXPECT_EQ(target.port, 4711);
    EXPECT_EQ(target.fileName, "a b.sigmf-data");
    EXPECT_EQ(target.offset, 12u);
    EXPECT_EQ(target.sizeBytes, ~quint64(0));
    EXPECT_EQ(TransferTarget::ofUrl("tcp://[::1]:1/x?size=2&offset=0").host, "::1");
}

class BadTarget : public testing::TestWithParam<const char *>
{
};

TEST_P(BadTarget, IsRefused)
{
    try {
        TransferTarget::ofUrl(GetParam());
        FAIL() << "was taken";
    } catch (const RecorderError &error) {
        EXPECT_EQ(error.kind(), TQ_KORVE::ekINVALID_VALUE);
        EXPECT_TRUE(error.text().startsWith('"'));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Urls, BadTarget,
    testing::Values("", "x", "http://h:1/f?offset=0&size=1", "tcp://h/f?offset=0&size=1", "tcp://h:0/f?offset=0&size=1",
                    "tcp://h:65536/f?offset=0&size=1", "tcp://:1/f?offset=0&size=1", "tcp://u@h:1/f?offset=0&size=1",
                    "tcp://h:1?offset=0&size=1", "tcp://h:1/?offset=0&size=1", "tcp://h:1/a/b?offset=0&size=1",
                    "tcp://h:1/..%2fa?offset=0&size=1", "tcp://h:1/f", "tcp://h:1/f?offset=0", "tcp://h:1/f?size=1",
                    "tcp://h:1/f?offset=0&size=1&more=1", "tcp://h:1/f?offset=0&offset=1",
                    "tcp://h:1/f?offset=-1&size=1", "tcp://h:1/f?offset=+1&size=1", "tcp://h:1/f?offset=&size=1",
                    "tcp://h:1/f?offset=0x1&size=1", "tcp://h:1/f?offset=0&size=18446744073709551616",
                    "tcp://h:1/f?offset=0&size=1#x"));

} // namespace

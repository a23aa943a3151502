#include "tests/installation/manager/bookmarksat.h"
#include "tests/installation/manager/raisedkind.h"
#include "tests/installation/manager/samplesource.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/installation/program/installationfixture.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/support/waiting.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>

namespace
{

constexpr CORBA::ULong noSpaceLeft = 10003;
using Chan = TQ_KRV::IF_KRV_c_Chan;

/// A recorder with one record whose disk gets full, and a manager that asks it for more.
class FullDiskOfTheRecorder : public InstallationFixture
{
protected:
    FullDiskOfTheRecorder()
    {
        EXPECT_TRUE(managerKnowsTheDevice());
        const QString file = writeWavFile(shared->folder.path(), QStringLiteral("full.wav"), 100000);
        EXPECT_EQ(import({file}).exitCode, 0);
        id = recordIds().last().toLatin1();
        admin = TQ_KRV::IF_KRV_c_KRV_var(manager())->getKorveAdminInterface();
        before = record();
    }
    ~FullDiskOfTheRecorder() override { startRecorder(RLIM_INFINITY); }

    /// Anew, on a disk that takes no file of more than so many bytes.
    void startRecorder(rlim_t most)
    {
        process("recorder")->end();
        const FullDisk limit(most);
        process("recorder") = start("recorder");
        TQ_KRV::struRECORD_DATA_var found;
        EXPECT_TRUE(QTest::qWaitFor([&] { return admin->getRecord("REC1", id, found.out()) == 0; }, patienceMs));
        EXPECT_TRUE(managerKnowsTheDevice());
    }
    TQ_KRV::struRECORD_DATA_var record()
    {
        TQ_KRV::struRECORD_DATA_var found;
        EXPECT_EQ(admin->getRecord("REC1", id, found.out()), 0u);
        return found;
    }
    static QStringList files()
    {
        return QDir(filePath("recorder/recordings")).entryList(QDir::Files, QDir::Name);
    }
    /// For recordings from there.
    static TQ_KRV::IF_KRV_c_Chan_var channelTo(const SampleSource &source)
    {
        CORBA::String_var id;
        return TQ_KRV::IF_KRV_c_KRV_var(manager())
            ->registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drVUHF_1M, TQ_KRV::dfRAW, true, false,
                                      "source", "REC1", TQ_KRV::TCP_IF, source.address().toLatin1().constData(),
                                      id.out());
    }

    QByteArray id;
    TQ_KRV::IF_KORVE_Admin_var admin;
    TQ_KRV::struRECORD_DATA_var before;
};

TEST_F(FullDiskOfTheRecorder, RefusesEachChangeAndLeavesTheRecordAsItWas)
{
    startRecorder(100);
    EXPECT_EQ(admin->setRecordComment("REC1", id, L"a longer comment"), noSpaceLeft);
    EXPECT_EQ(admin->addHistory("REC1", id, L"looked at"), noSpaceLeft);
    EXPECT_EQ(admin->setRecordDeletableFlag("REC1", id, !before->deletable), noSpaceLeft);
    EXPECT_EQ(completionBy<CORBA::BAD_PARAM>([&] { admin->addBookmarks("REC1", id, bookmarksAt({10})); }),
              CORBA::COMPLETED_NO);
    const TQ_KRV::struRECORD_DATA_var after = record();
    EXPECT_STREQ(after->recordName, before->recordName);
    EXPECT_EQ(after->deletable, before->deletable);
    EXPECT_EQ(after->bookmarks.length(), 0u);
    EXPECT_EQ(after->history.length(), before->history.length());
    startRecorder(RLIM_INFINITY);
    EXPECT_EQ(admin->setRecordComment("REC1", id, L"a longer comment"), 0u);
}

TEST_F(FullDiskOfTheRecorder, LeavesNothingOfACopy)
{
    startRecorder(50000);
    const QStringList filesBefore = files();
    TQ_KRV::seqCopySection whole(1);
    whole.length(1);
    whole[0] = {0, before->size};
    CORBA::String_var copy;
    EXPECT_EQ(admin->copyRecord("REC1", id, whole, L"copy", copy.out()), noSpaceLeft);
    EXPECT_STREQ(copy, "");
    EXPECT_EQ(files(), filesBefore);
}

TEST_F(FullDiskOfTheRecorder, HasNoCapacityForARecording)
{
    startRecorder(100);
    const QStringList filesBefore = files();
    const SampleSource source(1000);
    const TQ_KRV::IF_KRV_c_Chan_var channel = channelTo(source);
    try {
        channel->startRecording(0, L"", 0);
        ADD_FAILURE() << "it was started";
    } catch (const Chan::exChan &failure) {
        EXPECT_EQ(failure.kind, Chan::No_Capacity_On_Korve);
    }
    EXPECT_EQ(files(), filesBefore);
    channel->removeChannel();
}

TEST_F(FullDiskOfTheRecorder, EndsARecordingWithWhatWasStored)
{
    startRecorder(2 << 20);
    const QStringList recordsBefore = recordIds();
    const SampleSource source(1ull << 40);
    const TQ_KRV::IF_KRV_c_Chan_var channel = channelTo(source);
    channel->startRecording(0, L"", 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return recordIds().size() > recordsBefore.size(); }, patienceMs));
    id = recordIds().last().toLatin1();
    ASSERT_TRUE(QTest::qWaitFor([&] { return record()->recordStatus == TQ_KRV::rsIDLE; }, patienceMs));
    const TQ_KRV::struRECORD_DATA_var made = record();
    EXPECT_GT(made->size, 1u << 20);
    ASSERT_EQ(made->history.length(), 1u);
    QFile samples(filePath(qPrintable(QStringLiteral("recorder/recordings/%1.sigmf-data").arg(QLatin1String(id)))));
    ASSERT_TRUE(samples.open(QIODevice::ReadOnly));
    EXPECT_EQ(samples.readAll(), SampleSource::content(0, static_cast<qsizetype>(made->size)));
    channel->removeChannelForced();
}

} // namespace

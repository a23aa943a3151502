#include "tests/appruntime/capturedtraces.h"
#include "tests/faults/client.h"
#include "tests/faults/faultyinstallation.h"

#include <QFile>

using testing::Contains;

namespace
{

/// A client whose manager goes away while it does what it was told.
class Outages : public FaultyInstallation
{
protected:
    void run(const QByteArray &script)
    {
        start(script);
        recordId = importRecord();
        client.emplace(address(), recordId);
    }
    std::string failure(const char *exception) const
    {
        return "SetRecordComment for Device/Record REC1/" + recordId + " failed with exception: " + exception;
    }
    /// The comment of the record, as the recorder tells it.
    std::wstring comment()
    {
        const TQ_KORVE::IF_Control_var control = recorder();
        const TQ_KORVE::struMETA_DATA_var data = control->getMetaData(recordId.c_str());
        std::wstring text;
        for (CORBA::ULong i = 0; i < data->recordName.length(); ++i)
            text += static_cast<wchar_t>(data->recordName[i]);
        return text;
    }

    QString metaFile() const
    {
        return filePath(QStringLiteral("recorder/recordings/%1.sigmf-meta").arg(QString::fromStdString(recordId)));
    }

    std::string recordId;
    std::optional<Client> client;
};

/// A call finds nobody; or the loss has been noticed before the call, so that there is no interface to make it on.
bool nobodyIsThere(const std::string &number)
{
    return number == "210" || number == "5";
}

} // namespace

TEST_F(Outages, BeforeTheCommandIsDone)
{
    run("on manager setRecordComment kill before\n");
    CapturedTraces traces(32);
    EXPECT_EQ(client->run("SetRecordComment"), "211");
    EXPECT_THAT(traces.texts(), Contains(failure("COMM_FAILURE")));
    EXPECT_TRUE(client->outcomeIsUnknown());
    EXPECT_EQ(comment(), L"a");
    // The ORB may have more connections to the one that has died; when they are used up, it is known that nobody is there.
    EXPECT_TRUE(comesTrue([&] { return nobodyIsThere(client->run("SetRecordComment")); }));
    EXPECT_FALSE(client->outcomeIsUnknown());
}

TEST_F(Outages, OfTheManagerAreToldByTheHistory)
{
    run("on manager addHistory kill before\n");
    EXPECT_EQ(client->run("addHistory"), "211");
    EXPECT_TRUE(client->outcomeIsUnknown());
    EXPECT_TRUE(comesTrue([&] { return nobodyIsThere(client->run("addHistory")); }));
    EXPECT_FALSE(client->outcomeIsUnknown());
}

TEST_F(Outages, WhenTheCommandIsDoneAndNotAnswered)
{
    run("on manager setRecordComment kill after\n");
    CapturedTraces traces(32);
    EXPECT_EQ(client->run("SetRecordComment"), "211");
    EXPECT_THAT(traces.texts(), Contains(failure("COMM_FAILURE")));
    EXPECT_TRUE(client->outcomeIsUnknown());
    EXPECT_EQ(comment(), L"words");
}

TEST_F(Outages, OfTheRecorderLeaveItUnknownWhatIsDone)
{
    run("on recorder setRecordComment kill before\n");
    EXPECT_EQ(client->run("SetRecordComment"), "211");
    EXPECT_TRUE(client->outcomeIsUnknown());
    EXPECT_TRUE(comesTrue([&] { return client->run("SetRecordComment") == "10009"; })); // it has gone for certain
    EXPECT_FALSE(client->outcomeIsUnknown());
}

TEST_F(Outages, OfTheRecorderAreToldByEachFlow)
{
    run("");
    process("recorder").kill();
    EXPECT_TRUE(comesTrue([&] { return client->run("recordAnew") == "853"; }));
    EXPECT_TRUE(comesTrue([&] { return client->run("StartReplay") == "756"; }));
    EXPECT_TRUE(comesTrue([&] { return client->run("getRecord") == "502"; }));
    EXPECT_TRUE(comesTrue([&] { return client->run("SaveBookmarksToKorve") == "210"; }));
    EXPECT_FALSE(client->outcomeIsUnknown());
}

TEST_F(Outages, OfAFileThatIsGoneMakeTheRecordACorruptOne)
{
    run("");
    ASSERT_TRUE(QFile::remove(metaFile()));
    EXPECT_EQ(client->run("SetRecordComment"), "10016");
}

TEST_F(Outages, OfAFileThatCannotBeOpenedLeaveTheRecordAlone)
{
    run("");
    ASSERT_TRUE(QFile::rename(metaFile(), metaFile() + ".away"));
    ASSERT_TRUE(QFile::link(metaFile(), metaFile())); // leads to itself
    EXPECT_EQ(client->run("SetRecordComment"), "10015");
    ASSERT_TRUE(QFile::remove(metaFile()) && QFile::rename(metaFile() + ".away", metaFile()));
    EXPECT_EQ(client->run("SetRecordComment"), "0");
}

TEST_F(Outages, ThatTakeLongerThanTheClientWaits)
{
    run("on manager setRecordComment delay 10min once\n");
    CapturedTraces traces(32);
    EXPECT_EQ(client->run("SetRecordComment"), "210");
    EXPECT_THAT(traces.texts(), Contains(failure("TRANSIENT")));
    EXPECT_TRUE(client->outcomeIsUnknown());
    EXPECT_EQ(client->run("SetRecordComment"), "0");
}

TEST_F(Outages, OfAStoppedManagerEndByThemselves)
{
    run("");
    process("manager").end();
    setScript("at 3s stop manager for 8s\n");
    startAgain("manager");
    EXPECT_TRUE(comesTrue([&] { return client->run("SetRecordComment") == "210"; }));
    EXPECT_TRUE(comesTrue([&] { return client->run("SetRecordComment") == "0"; }));
}

TEST_F(Outages, OfAllServicesLeaveCommandsWithoutAConnection)
{
    run("");
    EXPECT_EQ(client->run("PauseReplay"), "771");
    process("manager").kill();
    process("cco").kill();
    EXPECT_EQ(client->run("disconnect"), "false");
    EXPECT_EQ(client->run("forget"), "true");
    CapturedTraces traces(32);
    EXPECT_EQ(client->run("PauseReplay"), "101");
    EXPECT_THAT(traces.texts(), Contains(testing::HasSubstr("Error resolving interface with path: ")));
    startAgain("cco");
    startAgain("manager");
    EXPECT_TRUE(comesTrue([&] { return client->run("PauseReplay") == "771"; }));
}

TEST_F(Outages, OfADiskThatBreaksAreNoLackOfRoom)
{
    run("");
    process("recorder").end();
    setScript("disk defect on REC1\n");
    startAgain("recorder");
    EXPECT_TRUE(comesTrue([&] { return client->run("SetRecordComment") == "10033"; }));
    EXPECT_FALSE(client->outcomeIsUnknown());
    EXPECT_EQ(client->run("recordAnew"), "10033");
}

TEST_F(Outages, OfTheDiskEndWhenThereIsRoom)
{
    run("");
    process("recorder").end();
    setScript("disk full on REC1\n");
    startAgain("recorder");
    EXPECT_TRUE(comesTrue([&] { return client->run("SetRecordComment") == "10003"; }));
    EXPECT_FALSE(client->outcomeIsUnknown());
    EXPECT_EQ(comment(), L"a");
    EXPECT_EQ(client->run("recordAnew"), "803");
    process("recorder").end();
    setScript("");
    startAgain("recorder");
    EXPECT_TRUE(comesTrue([&] { return client->run("SetRecordComment") == "0"; }));
}

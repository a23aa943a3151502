#include "tests/installation/recorder/receiver.h"
#include "tests/installation/recorder/sessionfixture.h"


using namespace TQ_KORVE;

namespace
{

enum : CORBA::ULong { added = 0, transferFinished = 3, transferFailed = 4 };

/// A copy or transfer, and who hears of it.
class Operations : public SessionTest
{
protected:
    Operations() { start(pattern(4 << 20)); }

    /// One who is not announced.
    TQ_KORVE_IT::IF_Korve_IT_ptr asking() { return receiver = orb->activate(*notified); }
    std::string fileUrl(CORBA::ULong port)
    {
        const std::string device = std::string("export:") + air.in();
        seqMETA_DATA_var files = control->listAllRecordsOnArchDev(device.c_str());
        const struMETA_DATA &file = files[files->length() - 1];
        return "tcp://127.0.0.1:" + std::to_string(port) + '/' + file.recordID.in() +
               "?offset=0&size=" + std::to_string(file.size);
    }
    static seqFILE_PART oneSection()
    {
        seqFILE_PART parts;
        parts.length(1);
        parts[0] = {0, 400};
        return parts;
    }
};

TEST_F(Operations, ShowBothRecordsAsCopied)
{
    NotifiedReceiver &all = announced();
    const CORBA::String_var copy = control->copyRecord(air, oneSection(), wideText());
    const auto heard = all.upTo(true, rsIDLE);
    ASSERT_GE(heard.size(), 4u);
    EXPECT_TRUE(heard[0].isStatus);
    EXPECT_EQ(heard[0].notification, CORBA::ULong(rsCOPYING));
    EXPECT_EQ(heard[0].recordId, air.in());
    EXPECT_EQ(heard[1].notification, CORBA::ULong(rsCOPYING));
    EXPECT_EQ(heard[1].recordId, copy.in());
    EXPECT_FALSE(heard[2].isStatus);
    EXPECT_EQ(heard[2].notification, added);
    EXPECT_EQ(heard[2].recordId, copy.in());
    EXPECT_EQ(statusOf(air), CORBA::ULong(rsIDLE));
    EXPECT_EQ(statusOf(copy), CORBA::ULong(rsIDLE));
}

TEST_F(Operations, DoNotCopyARecordThatPlays)
{
    const IF_ReplaySession_var session = control->getReplaySessionById(air, TQ_KORVE_IT::IF_Korve_IT::_nil());
    EXPECT_EQ(kindOf([&] { CORBA::String_var(control->copyRecord(air, oneSection(), wideText())); }),
              ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    session->endReplaySession();
    CORBA::String_var(control->copyRecord(air, oneSection(), wideText()));
    EXPECT_EQ(seqMETA_DATA_var(control->listAllRecords())->length(), 2u);
}

TEST_F(Operations, TellTheOneWhoAskedForACopy)
{
    const CORBA::String_var copy = control->copyRecordEx(air, oneSection(), wideText(), asking());
    const auto heard = notified->upTo(false, added);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].recordId, copy.in());
}

TEST_F(Operations, TellThatAFileWasTransferred)
{
    Receiver peer;
    control->copyRecordToArchDevEx(air, fileUrl(peer.port()).c_str(), asking());
    EXPECT_EQ(peer.takeAll(), samples);
    const auto heard = notified->upTo(false, transferFinished);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].recordId, air.in());
    EXPECT_EQ(heard[0].text, "");
}

TEST_F(Operations, TellWhyATransferFailed)
{
    Receiver peer;
    NotifiedReceiver &all = announced();
    const TQ_KORVE_IT::IF_Korve_IT_var same = TQ_KORVE_IT::IF_Korve_IT::_duplicate(receiver);
    control->copyRecordToArchDevEx(air, fileUrl(peer.port()).c_str(), same);
    peer.accept(); // and it goes at once
    const auto heard = all.upTo(false, transferFailed);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_NE(heard[0].text, "");
    control->setRecordComment(air, wideText());
    EXPECT_EQ(all.upTo(false, 2).size(), 2u); // it was not told twice
}

TEST_F(Operations, RefuseATransferWithAReason)
{
    const auto none = TQ_KORVE_IT::IF_Korve_IT::_nil();
    EXPECT_EQ(kindOf([&] { control->copyRecordToArchDevEx(air, "tape:1", none); }), ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { control->copyRecordToArchDev(air, fileUrl(deafPort()).c_str()); }), ekCONNECTION_FAILURE);
    EXPECT_EQ(kindOf([&] { seqMETA_DATA_var(control->listAllRecordsOnArchDev("export:R0")); }), ekINVALID_RECORD_ID);
}

TEST_F(Operations, EndWithTheRecorder)
{
    Receiver peer;
    control->copyRecordToArchDevEx(air, fileUrl(peer.port()).c_str(), TQ_KORVE_IT::IF_Korve_IT::_nil());
    const auto connection = peer.accept();
    EXPECT_EQ(recorder->end(), 0);
}

} // namespace

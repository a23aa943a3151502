#pragma once

#include "tests/installation/manager/fakerecorder.h"

#include <atomic>
#include <map>
#include <string>
#include <thread>
#include <vector>

/// A recorder with files that it sends over TCP as it is asked to.
class ExportingRecorder : public FakeRecorder
{
public:
    ~ExportingRecorder() override;

    TQ_KORVE::struMETA_DATA *getMetaData(Text recordId) override;
    TQ_KORVE::seqMETA_DATA *listAllRecordsOnArchDev(Text place) override;
    void copyRecordToArchDevEx(Text recordId, Text destination, Receiver receiver) override;

    /// The names of the only record "R1" with their contents.
    std::map<std::string, std::string> files{{"R1.sigmf-data", std::string(200000, 'd')},
                                             {"R1.sigmf-meta", "{\"meta\": 1}"}};
    /// Sends nothing, until the exporter closes the connection.
    std::atomic<bool> hangs = false;
    /// Tells how a transfer has ended.
    std::atomic<bool> tellsEnds = true;
    /// Tells what it is sending. Another recorder may not.
    std::atomic<bool> tellsTransfers = true;
    /// How often it has been asked what it is sending.
    std::atomic<int> questions = 0;

private:
    TQ_KORVE::seqMETA_DATA *transfers();
    void send(int connection, const std::string &bytes, Receiver receiver);

    std::mutex senderMutex; // guards what follows
    std::string sending;    ///< where to; empty: nowhere
    std::vector<std::thread> senders;
};

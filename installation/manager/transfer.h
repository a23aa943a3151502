#pragma once

#include "idl/korve.hh"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace installation
{

/// How far the transfer of one file is: told by the recorder, waited for by the export. Thread: any.
class Transfer
{
public:
    enum class State { Running, Done, Failed, Cancelled };

    /// The next file. What has been cancelled stays so.
    void begin();
    void end(bool success, const QString &reason);
    void cancel();

    /// Returns at the latest after @p limit.
    State wait(std::chrono::milliseconds limit);
    /// Why it failed, if the recorder has said so.
    QString reason();

private:
    std::mutex mutex; // guards the three members below
    std::condition_variable changed;
    State state = State::Running;
    QString failure;
};

/// Hears from a recorder how a transfer has ended.
class TransferReceiver : public POA_TQ_KORVE_IT::IF_Korve_IT
{
public:
    explicit TransferReceiver(std::shared_ptr<Transfer> transfer) : transfer(std::move(transfer)) {}

    void processBiteStateNotification(const TQ_KORVE_IT::struBiteStateNotification &) override {}
    void processNotification(const TQ_KORVE_IT::struNotification &arg1) override;
    void processNotificationAboutSession(const TQ_KORVE_IT::struSessionNotification &) override {}

private:
    const std::shared_ptr<Transfer> transfer;
};

} // namespace installation

#pragma once

#include <QString>

#include <atomic>
#include <thread>

/// A program that waits for samples on a port of 127.0.0.1 and counts what comes, one connection after the other.
class SampleReceiver
{
public:
    SampleReceiver();
    ~SampleReceiver();
    SampleReceiver(const SampleReceiver &) = delete;

    /// As "HOST:PORT".
    QString address() const;
    quint64 bytes() const { return received; }
    /// Drops the connection that there is, and takes no other.
    void hangUp();

private:
    void run();

    const int listener;
    std::atomic<int> connection = -1;
    std::atomic<quint64> received = 0;
    std::atomic<bool> stopped = false;
    std::thread thread;
};

#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

/// A program that waits for samples on a port of 127.0.0.1 and keeps what comes, one connection after the other.
class SampleReceiver
{
public:
    SampleReceiver();
    ~SampleReceiver();
    SampleReceiver(const SampleReceiver &) = delete;

    /// As "HOST:PORT".
    QString address() const;
    quint64 bytes() const { return received; }
    QByteArray content() const;
    /// Drops the connection that there is, and takes no other.
    void hangUp();

private:
    void run();
    void keep(const char *bytes, ssize_t count);

    const int listener;
    std::atomic<int> connection = -1;
    std::atomic<quint64> received = 0;
    mutable std::mutex mutex; // guards `kept`, which the thread writes
    QByteArray kept;
    std::atomic<bool> stopped = false;
    std::thread thread;
};

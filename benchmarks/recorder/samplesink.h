#pragma once

#include <QtGlobal>

#include <future>
#include <thread>

/// A sum over bytes in their order, wherever they are cut.
class SampleSum
{
public:
    void add(const char *bytes, qint64 size);
    quint64 value() const { return sum; }

private:
    quint64 sum = 0;
    quint64 position = 0;
};

/// Listens on loopback, takes one connection on a thread of its own, and reads it to its end.
class SampleSink
{
public:
    /// @p checks: sums up what comes, which takes time of its own.
    explicit SampleSink(bool checks = false);
    ~SampleSink();

    static constexpr quint32 host = 0x7f000001;
    quint16 port() const { return ownPort; }
    /// Waits for the end of the stream; how many bytes came.
    quint64 received();
    quint64 checksum() const { return sum.value(); }

private:
    quint64 readToEnd();

    const bool checks;
    int listener;
    quint16 ownPort = 0;
    SampleSum sum;
    std::promise<quint64> total;
    std::thread thread;
};

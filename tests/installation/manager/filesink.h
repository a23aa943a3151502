#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

/// Where one file goes: takes one connection on 127.0.0.1 and keeps what comes.
class FileSink
{
public:
    FileSink();
    ~FileSink();
    FileSink(const FileSink &) = delete;

    std::uint16_t port() const;
    bool isConnected() const { return connection >= 0; }
    /// Waits, bounded by the sender's patience, until the sender closes the connection; then all that came.
    std::string content();
    /// Closes the connection, or takes none any more.
    void close();

private:
    void take();

    const int listener;
    std::atomic<int> connection = -1;
    std::string bytes;
    std::thread thread;
};

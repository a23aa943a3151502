#pragma once

#include <QString>

#include <string>
#include <thread>

/// Answers whatever comes over TCP with the same bytes, and keeps the connection open.
class RawServer
{
public:
    /// Throws std::runtime_error when the port is taken.
    RawServer(const QString &address, unsigned short port, std::string answer);
    RawServer(const RawServer &) = delete;
    ~RawServer();

private:
    void serve();

    const std::string answer;
    int listener;
    int ending[2]; // a pipe; closing one end wakes the thread
    std::thread thread;
};

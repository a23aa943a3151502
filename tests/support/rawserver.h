#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

/// Answers whatever comes over TCP with bytes, and keeps the connection open.
class RawServer
{
public:
    /// What it sends for that which it has read at once. Called in its thread.
    using Answer = std::function<std::string(const std::string &)>;

    /// Each answer comes `delay` after what it answers, one at a time. Throws std::runtime_error when the port is taken.
    RawServer(const QString &address, unsigned short port, Answer answer, std::chrono::milliseconds delay = {});
    RawServer(const RawServer &) = delete;
    ~RawServer();

private:
    void serve();

    const Answer answer;
    const std::chrono::milliseconds delay;
    int listener;
    int ending[2]; // a pipe; closing one end wakes the thread
    std::thread thread;
};

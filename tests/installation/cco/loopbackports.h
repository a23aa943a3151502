#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

/// A TCP port of 127.0.0.1 that accepts connections (the system does it) and never says a word.
class MutePort
{
public:
    MutePort();
    ~MutePort();
    MutePort(const MutePort &) = delete;
    MutePort &operator=(const MutePort &) = delete;

    std::uint16_t port() const;

private:
    const int listener;
};

/// A TCP port of 127.0.0.1 that does not even answer an attempt to connect: its queue is full.
class DeafPort
{
public:
    DeafPort();
    ~DeafPort();
    DeafPort(const DeafPort &) = delete;
    DeafPort &operator=(const DeafPort &) = delete;

    std::uint16_t port() const;

private:
    const int listener;
    std::vector<int> waiting;
};

/// Connections from 127.9.9.9 to a port of 127.0.0.1, as many as there are to be had.
class StrangersConnections
{
public:
    StrangersConnections(std::uint16_t port, int count);
    ~StrangersConnections();
    StrangersConnections(const StrangersConnections &) = delete;
    StrangersConnections &operator=(const StrangersConnections &) = delete;

    /// On each of them.
    void send(const std::string &bytes);

private:
    std::vector<int> descriptors;
};

/// A port of 127.0.0.1 whose one connection goes on to another port of 127.0.0.1, where it comes from 127.9.9.9.
class StrangersWay
{
public:
    explicit StrangersWay(std::uint16_t port);
    ~StrangersWay();
    StrangersWay(const StrangersWay &) = delete;
    StrangersWay &operator=(const StrangersWay &) = delete;

    std::uint16_t port() const;

private:
    void carry() const;

    const int listener;
    const int onward;
    const int end; ///< readable when it is over
    std::thread thread;
};

/// A port of 127.0.0.1 where nobody listens: it is bound for the life of this object, so that nobody else gets it.
class RefusingPort
{
public:
    RefusingPort();
    ~RefusingPort();
    RefusingPort(const RefusingPort &) = delete;
    RefusingPort &operator=(const RefusingPort &) = delete;

    std::uint16_t port() const;

private:
    const int holder;
};

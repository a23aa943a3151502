#pragma once

/// A port of 127.0.0.1 to connect to. Nobody reads what comes.  Thread: any one at a time.
class ConnectionCounter
{
public:
    /// @throws std::runtime_error
    ConnectionCounter();
    ~ConnectionCounter();
    ConnectionCounter(const ConnectionCounter &) = delete;

    unsigned short port() const;
    /// How many connections have been made so far; one counts as soon as its maker has it.
    int count();

private:
    const int listener;
    int connections = 0;
};

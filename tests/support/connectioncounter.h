#pragma once

/// A port to connect to. Nobody reads what comes.  Thread: any one at a time.
class ConnectionCounter
{
public:
    /// Port 0 is one that the system chooses. @throws std::runtime_error
    explicit ConnectionCounter(const char *address = "127.0.0.1", unsigned short port = 0);
    ~ConnectionCounter();
    ConnectionCounter(const ConnectionCounter &) = delete;

    unsigned short port() const;
    /// How many connections have been made so far; one counts as soon as its maker has it.
    int count();

private:
    const int listener;
    int connections = 0;
};

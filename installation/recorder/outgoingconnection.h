#pragma once

#include "installation/recorder/descriptor.h"
#include "installation/recorder/wakeup.h"

#include <QString>

#include <chrono>
#include <functional>
#include <stop_token>

struct addrinfo;

namespace installation::recorder
{

class File;

/// A TCP connection that we opened in order to send, closed at the end of its life.
///
/// Waits for the receiver, but never longer than a limit, and not at all once it is told to stop.
/// Thread: one at a time.  Errors: throws RecorderError: `ekCONNECTION_FAILURE` when nobody takes the connection,
/// `ekNETWORK_FAILURE` later.
class OutgoingConnection
{
public:
    struct Timing {
        std::chrono::milliseconds connectLimit{3000};
        std::chrono::milliseconds stallLimit{20'000}; ///< in which a receiver has to take something
        std::chrono::milliseconds closeLimit{5000};   ///< in which it has to close its side at the end
    };

    /// Connects to @p port of @p host, a name or an address.
    OutgoingConnection(const QString &host, quint16 port, const std::stop_token &stop, const Timing &timing);
    OutgoingConnection(const OutgoingConnection &) = delete;

    void send(const char *bytes, std::size_t count);
    void sendFile(const File &file, quint64 position, quint64 count);
    /// Lets the receiver know that it has all, and returns when it has taken that.
    void finish();

private:
    bool tryConnect(const addrinfo &address);
    /// False after @p limit.
    bool waitFor(short events, std::chrono::milliseconds limit);
    void waitUntilWritable();
    void drainUntilClosed();
    [[noreturn]] void fail(int error) const;

    const QString name;
    const Timing timing;
    const std::stop_token stop;
    Wakeup wakeup; ///< comes when we are to stop
    const std::stop_callback<std::function<void()>> stopCallback;
    Descriptor connection;
};

} // namespace installation::recorder

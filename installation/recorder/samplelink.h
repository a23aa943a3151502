#pragma once

#include "installation/recorder/linkerror.h"

#include <chrono>
#include <optional>

namespace installation::recorder
{

class Wakeup;

/// The socket over which the samples of a session go, to or from one peer.
///
/// By TCP an end of the stream is the end of the connection. By UDP it is an empty datagram; who listens learns from the
/// first datagram who its peer is. Nothing here waits for longer than it is told.
/// Thread: one at a time.  Errors: throws LinkError; `ekDataStreamUnavailable` says that the peer has gone.
class SampleLink
{
public:
    /// IPv4, all in the host's order.
    struct Address {
        LLDCmodule::eINTERFACE_KIND kind = LLDCmodule::ifTCP;
        quint32 host = 0;
        quint16 port = 0;
    };
    enum class Wait { Ready, Woken, TimedOut };

    /// Bytes of a datagram that every network carries in one piece, of which samples fill as much as goes in whole.
    static constexpr qint64 datagramBytes = 1400;

    /// @throws LinkError with `ekConnFailed` when nobody is there, also after @p limit.
    static SampleLink connectTo(const Address &peer, std::chrono::milliseconds limit);
    /// On port 0 any that is free.
    /// @throws LinkError with `ekIfError` when that is not possible.
    static SampleLink listenOn(const Address &own);
    SampleLink(SampleLink &&other) noexcept;
    ~SampleLink();

    LLDCmodule::eINTERFACE_KIND kind() const { return ownKind; }
    /// Where it listens, or the peer to which it has connected.
    const Address &address() const { return shownAddress; }
    bool hasPeer() const { return peerIsThere; }

    /// Takes the peer if one has come by now.
    /// @throws LinkError with `ekIfError` when there is one that cannot be taken.
    bool tryAccept();
    /// How many of these bytes are on their way; 0 when there is no room at present. By UDP all are one datagram.
    qint64 trySend(const char *bytes, qint64 size);
    /// The same of an open file, without a look at its bytes; not by UDP.
    qint64 trySendFile(int descriptor, quint64 position, qint64 size);
    /// None at the end of the stream; 0 when nothing is there at present.
    std::optional<qint64> tryReceive(char *bytes, qint64 size);
    /// Waits until something may be sent (@p events POLLOUT) or received (POLLIN), or for the wakeup alone when there is
    /// no link, or no event. No limit means for ever.
    static Wait await(const SampleLink *link, short events, const Wakeup &wakeup,
                      std::optional<std::chrono::nanoseconds> limit);
    /// Tells the peer that nothing follows; what is on its way still arrives.
    void finish();

private:
    SampleLink(LLDCmodule::eINTERFACE_KIND kind, int descriptor) : ownKind(kind), descriptor(descriptor) {}
    void bindTo(const Address &own);
    void connectWithin(const Address &peer, std::chrono::milliseconds limit);
    void learnOwnPort();

    LLDCmodule::eINTERFACE_KIND ownKind;
    int descriptor;
    Address shownAddress;
    bool peerIsThere = false;
};

/// "127.0.0.1:4711"
QString toText(const SampleLink::Address &address);

} // namespace installation::recorder

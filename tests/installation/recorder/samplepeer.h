#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// The other end of a link of samples: plain sockets of IPv4 that never wait longer than a minute.
///
/// Errors: throws std::runtime_error.
class SamplePeer
{
public:
    enum class Transport { Tcp, Udp };

    /// Listens at a port that is free.
    SamplePeer(Transport transport, const QString &address);
    /// Connects to a port.
    SamplePeer(Transport transport, std::uint32_t host, std::uint16_t port);
    SamplePeer(SamplePeer &&other) noexcept;
    ~SamplePeer();

    std::uint32_t host() const { return ownHost; }
    std::uint16_t port() const { return ownPort; }
    /// Takes the one who connects; from here on it is the peer.
    SamplePeer &accept();
    void send(const QByteArray &bytes);
    /// The next @p count bytes; by UDP one datagram of at most these.
    QByteArray read(int count);
    /// Everything to the end of the stream, that is by UDP to the empty datagram.
    QByteArray readToEnd();
    /// How many bytes come to the end of the stream.
    std::uint64_t discardToEnd();
    /// By UDP: waits for somebody to send, who is the peer from here on.
    void answer();
    /// By TCP: breaks the connection off, so that the other end gets an error.
    void reset();
    /// Nothing follows from here.
    void finish();
    void close();

private:
    void setPatience();

    bool isTcp;
    int descriptor;
    std::uint32_t ownHost = 0;
    std::uint16_t ownPort = 0;
};

#pragma once

#include <QString>

#include <random>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

/// A loopback address that no other test uses for as long as this lives: ports never vary here, addresses do.
///
/// Whoever can bind port 8002 of an address has it; services use other ports.
class LoopbackLease
{
public:
    LoopbackLease()
    {
        std::random_device random;
        for (int i = 0; i < 1000 && descriptor < 0; ++i)
            tryAddress(0x7f000000u | (random() & 0x00ffffffu));
        if (descriptor < 0)
            throw std::runtime_error("no free loopback address");
    }
    LoopbackLease(const LoopbackLease &) = delete;
    ~LoopbackLease() { close(descriptor); }

    const QString &address() const { return text; }

private:
    void tryAddress(std::uint32_t address)
    {
        const unsigned lastByte = address & 0xff;
        if ((address >> 16) == 0x7f00 || lastByte == 0 || lastByte == 255) // 127.0.x.y is everybody's
            return;
        const int candidate = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in name{};
        name.sin_family = AF_INET;
        name.sin_port = htons(8002);
        name.sin_addr.s_addr = htonl(address);
        if (candidate < 0 || bind(candidate, reinterpret_cast<sockaddr *>(&name), sizeof name) != 0) {
            close(candidate);
            return;
        }
        descriptor = candidate;
        text = QString::fromLatin1(inet_ntoa(name.sin_addr));
    }

    int descriptor = -1;
    QString text;
};

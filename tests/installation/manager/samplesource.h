#pragma once

#include <QByteArray>
#include <QString>

#include <thread>

/// A program that has samples: waits for one connection on a port of 127.0.0.1, or makes one, sends, and hangs up.
class SampleSource
{
public:
    /// Waits to be asked.
    explicit SampleSource(quint64 bytes);
    /// Connects to 127.0.0.1.
    SampleSource(quint16 port, quint64 bytes);
    ~SampleSource();
    SampleSource(const SampleSource &) = delete;

    /// As "HOST:PORT".
    QString address() const;
    /// What any source sends from its @p begin on: bytes of which no section of a few MiB looks like another.
    static QByteArray content(quint64 begin, qsizetype count);

private:
    void send(int connection) const;

    const quint64 bytes;
    const int descriptor;
    std::thread thread;
};

#pragma once

#include "installation/recorder/descriptor.h"

#include <QByteArray>

/// Somebody who listens at 127.0.0.1 for one connection at a time.
class Receiver
{
public:
    static constexpr quint32 address = 0x7f000001;

    Receiver();

    quint16 port() const { return listeningPort; }
    /// Accepts a connection, and takes what comes until the sender ends it.
    QByteArray takeAll();
    /// Accepts a connection and leaves it alone while the answer lives.
    installation::recorder::Descriptor accept();

private:
    const installation::recorder::Descriptor listener;
    quint16 listeningPort = 0;
};

/// A port at which nobody listens.
quint16 deafPort();

#pragma once

#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorsession.h"
#include "tests/orbconnection/simulation/side.h"

#include <deque>
#include <memory>

namespace simulation
{
/// A client's mirror of a server, joined by queues of batches that are delivered, repeated, lost, or wait.
class Link
{
public:
    Link(Side &server, Side &client, const MirrorTiming &timing);

    /// Ends the session, if there is one, and begins another.
    void connect();
    void disconnect();
    /// Does one thing to what is on the way.
    void act(Random &random);
    /// Everything arrives. False when there was nothing on the way.
    bool settle();
    /// What is not equal on both sides, and should be; empty: nothing.
    std::string difference() const;

    bool isConnected() const { return session != nullptr; }
    /// The bytes that have arrived so far, as a number.
    std::size_t fingerprint() const { return seen; }

private:
    void flushServer();
    void flushClient();
    void deliverToClient();
    void deliverToServer();
    /// False, when there is none to lose.
    static bool loseOne(std::deque<std::string> &batches, Random &random);
    void resynchronise();
    void note(const std::string &batch);
    std::string differenceOfValues() const;
    std::string differenceOfNodes() const;
    QString atClient(const QString &serverPath) const;
    QString atServer(const QString &clientPath) const;

    Side &server;
    Side &client;
    const MirrorTiming timing;
    std::deque<std::string> toClient;
    std::deque<std::string> toServer;
    std::string lastToClient;
    std::string lastToServer;
    mirror::MirrorClient mirrorClient;
    std::unique_ptr<mirror::MirrorSession> session;
    bool lostToClient = false;
    bool lostToServer = false;
    std::size_t seen = 0;
};
} // namespace simulation

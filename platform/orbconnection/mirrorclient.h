#pragma once

#include "orbconnection/batchwriter.h"
#include "orbconnection/mirroredpath.h"
#include "orbconnection/mirroredvalues.h"
#include "orbconnection/unconfirmedchanges.h"
#include "valuetreelib/itreelistener.h"

#include <set>

namespace values
{
class Tree;
}

namespace mirror
{
/// The client's side of one mirror: makes one path of the tree what the server tells, and tells the server of changes
/// that others make there. Knows no transport.
///
/// The server's word holds; what is set here before the snapshot is complete, or while there is no session, is not
/// sent. Values that are created here are sent when they are set later. Removals here are not sent.
/// Observers may end it while it works, by lose(); whoever owns it keeps it alive for that call.
/// Thread: main; never blocks.
class MirrorClient final : public values::ITreeListener, public IObserver
{
public:
    enum class Outcome {
        Applied,
        Repeated,         ///< seen already, since the answer to it was lost
        SnapshotComplete, ///< from now on this side is as the server says
        Missing,          ///< batches are missing: ask for a snapshot
        Malformed         ///< or an observer has thrown: end the session
    };

    /// @p ownValue, a path relative to @p path, is not mirrored.
    MirrorClient(values::Tree &tree, const QString &path, const QString &ownValue, const MirrorTiming &timing,
                 BatchWriter::Sink sink, std::function<void()> wantsFlush);
    ~MirrorClient() override;

    /// A session begins: forgets numbers, keeps values.
    void begin();
    Outcome receive(std::string_view batch);
    /// The session has ended: every mirrored value gets ValueStateConnectionLost; then nodes and values tell
    /// ChangeCodeDeleted. Nothing, when there was no session.
    void lose();
    void flush();
    /// For good: the tree is left alone from here on, and neither function that it was made with is called.
    void detach();

    bool isComplete() const { return complete; }
    /// No snapshot is being received or to come.
    bool isSettled() const { return complete && !inSnapshot; }
    const QString &clientPath() const { return path.top(); }

    // What the tree tells; not for others.
    void itemAdded(values::TreeItem &item, IObserver *originator) override;
    void itemRemoved(values::TreeItem &item, IObserver *originator) override;
    void valueChanged(const values::ValueChange &change) override;
    void commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command) override;
    void valueReleased(values::ValueBase &) override {}
    void Update(Observable *, TChangeCode) override {}

private:
    bool isOurs(const values::ValueBase &value, const IObserver *originator) const;
    void send(const values::ValueBase &value, const std::string &frames);
    void announce(values::ValueBase &value);
    void write(const Record &record);

    bool apply(const Record &record);
    void beginSnapshot();
    void endSnapshot();
    bool applyNode(const Record &record);
    bool applyNodeGone(const Record &record);
    bool applyValue(const Record &record);
    bool applyValueGone(const Record &record);
    bool applyChange(const Record &record);
    /// What the server has not heard of yet stays there once it has.
    std::vector<QString> announcedBelow(const QString &top) const;
    void removeAllBelowBut(const std::vector<QString> &kept, const QString &top);

    values::Tree &tree;
    const MirroredPath path;
    const QString ownValuePath;
    const std::size_t maximumBatchBytes;
    BatchWriter writer;
    const std::function<void()> wantsFlush;
    MirroredValues known;
    UnconfirmedChanges unconfirmed;
    std::set<QString> staleValues; // mirrored before, not yet in the snapshot that is being received
    std::set<QString> staleNodes;
    std::set<QString> nodes;
    quint32 incomingId = 0;
    quint32 lastOwnId = 0;
    quint64 lastReceived = 0;
    bool inSnapshot = false;
    bool complete = false;
    bool inSession = false;
    std::string scratch;
};
} // namespace mirror

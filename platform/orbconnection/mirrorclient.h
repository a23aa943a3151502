#pragma once

#include "orbconnection/batchwriter.h"
#include "orbconnection/mirroredpath.h"
#include "orbconnection/pathtable.h"
#include "valuetreelib/itreelistener.h"

#include <QSet>

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
/// A change that is made here shows at once, and what the server says of that path is passed over until the server has
/// confirmed that it applied the record of it; then the server's word holds. Changes merge while they wait for room, but
/// for values that are not optimised. docs/mirror.md says what is sent, and what is not.
///
/// Observers may end the session while this works, by lose(), or run an event loop that brings newer batches or another
/// session; whoever owns it keeps it alive for that call. One that throws is traced, and nothing else is lost.
/// Thread: main; never blocks.
class MirrorClient final : public values::ITreeListener, public IObserver
{
public:
    enum class Outcome {
        Applied,
        Repeated,         ///< seen already, since the answer to it was lost
        SnapshotComplete, ///< from now on this side is as the server says
        Missing,          ///< batches are missing, or were overtaken: ask for a snapshot
        Malformed         ///< end the session
    };

    /// The value at @p ownValue, a path relative to @p path, is not mirrored; empty: there is none.
    MirrorClient(values::Tree &tree, const QString &path, const QString &ownValue, const MirrorTiming &timing,
                 const Outlet &outlet);
    ~MirrorClient() override;

    /// A session begins: forgets numbers, keeps values.
    void begin();
    Outcome receive(std::string_view batch);
    /// The session has ended: every mirrored value gets ValueStateConnectionLost; then nodes and values tell
    /// ChangeCodeDeleted. Nothing, when there was no session.
    void lose();
    /// Writes what was changed here, as far as there is room. False: the rest waits for room.
    bool flush();
    /// Leaves the tree alone from here on, for good, and calls nothing of the outlet any more.
    void detach();

    /// Removes the mirrored node with all below it, of which the server is not told.
    void removeAll();

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
    using Place = PathTable::Place;

    // What goes to the server.
    bool isOwn(const values::TreeItem &item) const { return item.GetPathName() == ownValuePath; }
    Place placeToTell(values::ValueBase &value, bool forced);
    Place announce(values::ValueBase &value);
    void checkNodeAbove(const values::TreeItem &item);
    void makeDirty(Place place, Parts parts);
    /// @p merged is what becomes dirty where the change can't be told by itself.
    void tellEvent(Place place, Parts merged);
    bool writeDirty(bool onlyWithRoom);
    void write(Place place);
    void writeValue(Place place);
    void writeSet(Place place, const std::string &frames);
    bool writeAbout(Place place, Record record);

    // What comes from the server.
    bool apply(const Record &record);
    bool applyAbout(const Record &record);
    void beginSnapshot();
    bool endSnapshot();
    bool applyPath(const Record &record);
    void applyNode(Place place);
    void applyValue(Place place, const Record &record);
    void applyValueGone(Place place);
    void applyFrames(Place place, std::string_view frames);
    void addValue(Place place, const Record &record);
    void noteNamed(Place place, RecordKind kind);
    /// A change made here is on its way to the server, whose word about the value is older until it is confirmed.
    bool isPassedOver(Place place) const;
    bool isNodePassedOver(Place place) const;
    void removeNode(const QString &nodePath);
    /// Otherwise it is this side's own, for the sake of what is below it. False: it stays.
    bool removeIfEmpty(const QString &nodePath);
    void removeEmptyNodes();
    void addTop();
    void removeUnnamed();
    void announceWanted();

    values::Tree &tree;
    const MirroredPath path;
    const QString ownValuePath;
    const std::size_t maximumBatchBytes;
    BatchWriter writer;
    PathTable paths;
    std::vector<Place> serverNamed; // by the server's number; 0: a path that this tree can't hold
    quint32 lastNumber = 0;
    quint64 recordsSent = 0;
    quint64 confirmed = 0;
    quint64 lastReceived = 0;
    quint64 turn = 0;     // who was given another one has been overtaken, by what an observer did
    Place arriving = 0;   // of the value that is being added
    QString arrivingNode; // that is being added
    QSet<QString> staleValues; // mirrored in a session before, not named yet in this one
    std::set<QString> staleNodes;
    std::set<QString> ownNodes;     // that the server has not told of, or no longer has
    std::set<QString> nodesToCheck; // of these; who holds nothing goes
    QSet<const values::ValueBase *> fresh; // created since the last flush: what is set of them is their seed
    std::set<QString> wanted;              // set here before the server could be told of them
    bool mayBeKnown = false;               // what the server names
    bool inSnapshot = false;
    bool complete = false;
    bool inSession = false;
    std::string event;   // the frames of one change
    std::string scratch; // others
};
} // namespace mirror

#pragma once

#include "orbconnection/batchwriter.h"
#include "orbconnection/mirroredpath.h"
#include "orbconnection/mirrorvalue.h"
#include "orbconnection/pathtable.h"
#include "valuetreelib/itreelistener.h"

namespace values
{
class Tree;
}

namespace mirror
{
/// The server's side of one mirror: a list of what is dirty for one client, and the number of that client's records that
/// have been applied. Knows no transport.
///
/// What changes becomes dirty. When there is room, what is dirty is written as it stands then, so that changes merge and
/// a slow client costs an entry for each path. What a record of the client touched becomes dirty, too: whatever came of
/// it, the client hears how things are, at or after the confirmation of its record. A value that is not optimised is told
/// change by change, each after all that was dirty before it; merged like others while too much waits for the client.
///
/// It is the originator of what its client changes. Thread: main; never blocks.
class MirrorSession final : public values::ITreeListener, public ClientOriginator
{
public:
    /// Begins with a snapshot to write.
    MirrorSession(values::Tree &tree, const QString &path, const MirrorTiming &timing, const Outlet &outlet);
    ~MirrorSession() override;

    /// Tells everything once more, from a begin mark to an end mark.
    void startOver();
    /// Writes what is dirty, as far as there is room. False: the rest waits for room.
    bool flush();
    /// Makes the changes of a batch. False, with a trace, when it is malformed or not the next one: end the session.
    bool receive(std::string_view batch);

    // What the tree tells; not for others.
    void itemAdded(values::TreeItem &item, IObserver *originator) override;
    void itemRemoved(values::TreeItem &item, IObserver *originator) override;
    void valueChanged(const values::ValueChange &change) override;
    void commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command) override;
    void valueReleased(values::ValueBase &) override {}

private:
    using Place = PathTable::Place;

    void makeDirty(Place place, Parts parts);
    /// @p merged is what becomes dirty where the change can't be told by itself.
    void tellEvent(Place place, Parts merged);
    bool writeDirty(bool onlyWithRoom);
    void beginSnapshot();
    void endSnapshot();
    void write(Place place);
    quint32 numberOf(Place place);
    void name(Place place);
    void writeNode(Place place);
    void writeValue(Place place);
    void writeChange(Place place, Parts parts);

    bool apply(const Record &record);
    bool applyPath(const Record &record);
    void applyValue(Place place, const Record &record);
    void applySet(Place place, const Record &record);
    void applyValueGone(Place place);
    bool hasContent(Place place, std::string_view frames);

    values::Tree &tree;
    const MirroredPath path;
    const std::size_t maximumBatchBytes;
    BatchWriter writer;
    PathTable paths;
    std::vector<Place> named;       // by number
    std::vector<Place> clientNamed; // by the client's number; 0: a path that this tree can't hold
    quint64 applied = 0;
    quint64 appliedTold = 0;
    quint64 lastReceived = 0;
    bool snapshotBegins = false;
    std::size_t listed = 0; // of the snapshot, not yet written
    bool inSnapshot = false;
    std::string event;   // the frames of one change
    std::string scratch; // others
};
} // namespace mirror

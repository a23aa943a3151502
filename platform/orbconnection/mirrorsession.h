#pragma once

#include "orbconnection/batchwriter.h"
#include "orbconnection/mirroredpath.h"
#include "orbconnection/mirroredvalues.h"
#include "valuetreelib/itreelistener.h"

namespace values
{
class Node;
class Tree;
}

namespace mirror
{
/// The server's side of one mirror: tells a client what stands below one path of the tree and how it changes, and makes
/// the client's changes. Knows no transport.
///
/// It is the originator of the client's changes, so that they go to everybody but this client. After records have been
/// written, `wantsFlush` is called once; flush() is to come soon.
/// Thread: main; never blocks.
class MirrorSession final : public values::ITreeListener, public IObserver
{
public:
    MirrorSession(values::Tree &tree, const QString &path, const MirrorTiming &timing, BatchWriter::Sink sink,
                  std::function<void()> wantsFlush);
    ~MirrorSession() override;

    /// Tells everything, from a begin mark to an end mark.
    void sendSnapshot();
    void flush();
    /// Makes the changes of a batch. False, with a trace, when it is malformed or not the next one, or an observer
    /// has thrown: end the session.
    bool receive(std::string_view batch);

    // What the tree tells; not for others.
    void itemAdded(values::TreeItem &item, IObserver *originator) override;
    void itemRemoved(values::TreeItem &item, IObserver *originator) override;
    void valueChanged(const values::ValueChange &change) override;
    void commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command) override;
    void valueReleased(values::ValueBase &) override {}
    void Update(Observable *, TChangeCode) override {}

private:
    void write(const Record &record);
    void writeItem(values::TreeItem &item);
    void writeChange(const values::ValueBase &value, const std::string &frames);
    bool apply(const Record &record);
    bool applyValue(const Record &record);
    bool applyChange(const Record &record);

    values::Tree &tree;
    const MirroredPath path;
    const std::size_t maximumBatchBytes;
    BatchWriter writer;
    const std::function<void()> wantsFlush;
    MirroredValues known;
    quint32 lastId = 0;
    quint32 lastClientId = 0;
    quint64 lastReceived = 0;
    std::string scratch;
};
} // namespace mirror

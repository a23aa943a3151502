#pragma once

#include "tests/orbconnection/simulation/random.h"
#include "valuetreelib/itreelistener.h"
#include "valuetreelib/tree.h"

#include <set>

namespace simulation
{
/// One process: a tree, a program that changes it at random, and observers that answer changes.
///
/// Knows of each value whether its program made it and never set it: that is what a mirror leaves out.
class Side : public values::ITreeListener, public IObserver
{
public:
    /// @p top is where the shared part stands in @p tree. A server's observers answer otherwise than a client's.
    Side(values::Tree &tree, const QString &top, bool isServer);
    ~Side() override;

    /// What is created from here on is seeded until the next call.
    void endSeeding() { fresh.clear(); }

    /// Does one thing to the tree.
    void act(Random &random);

    /// Whether the value was made here, and has not been set or told by a server since.
    bool isOwn(const QString &path) const { return own.contains(path); }
    /// Whether such a value is below the node.
    bool isOwnNode(const QString &path) const;

    values::Tree &tree;
    const QString top;

    void Update(Observable *subject, TChangeCode code) override;
    void itemAdded(values::TreeItem &item, IObserver *originator) override;
    void itemRemoved(values::TreeItem &item, IObserver *originator) override;
    void valueChanged(const values::ValueChange &change) override;
    void commandRecorded(values::ValueBase &, const values::ValueBase::CommandOnValue &) override {}
    void valueReleased(values::ValueBase &) override {}

private:
    void create(const QString &path, Random &random);
    void answerAsServer(values::ValueBase &value);
    void answerAsClient(values::ValueBase &value);

    const bool isServer;
    std::set<QString> own;
    std::set<QString> fresh;
};

/// Changes @p value in one of the ways that its class knows.
void changeAtRandom(values::ValueBase &value, Random &random);
} // namespace simulation

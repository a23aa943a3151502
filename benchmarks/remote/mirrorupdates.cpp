#include "benchmarks/remote/mirroredtree.h"
#include "benchmarks/remote/mixedcontent.h"
#include "benchmarks/remote/mixedvalues.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <benchmark/benchmark.h>

#include <QRemoteObjectNode>

#include <rep_mixed_replica.h>

using namespace values;

namespace
{

/// Counts what arrives of a process's updates, and has them made.
class Updates
{
public:
    virtual ~Updates() = default;
    void run()
    {
        const int begin = std::exchange(end, end + mixed::updatesPerRound);
        process().tell("update " + QByteArray::number(begin) + ' ' + QByteArray::number(end));
        waitFor([this] { return arrived >= end; }, "the updates arrive");
    }
    /// That every value is as its last update made it, and no update came twice.
    void check() const
    {
        require(arrived == end, "each update arrives once");
        for (int index = 0; index < mixed::valueCount; ++index)
            require(isAsSet(mixed::lastUpdate(index, end)), "each value is as it was made last");
    }

protected:
    void countOne() { ++arrived; }

private:
    virtual ServiceProcess &process() const = 0;
    /// Whether the value that @p update goes to is as that makes it.
    virtual bool isAsSet(int update) const = 0;

    int arrived = 0;
    int end = 0;
};

class MirrorUpdates : public Updates, public IObserver
{
public:
    MirrorUpdates()
    {
        for (ValueBase *value : mixedValues.all())
            value->AddObserver(this);
    }
    void Update(Observable *, TChangeCode code) override
    {
        if (code == ChangeCodeValue)
            countOne();
    }

private:
    bool isAsSet(int update) const override { return mixedValues.isAsSet(update); }
    ServiceProcess &process() const override { return Service::instance().process(); }

    const QString path = QStringLiteral("/Updates");
    const std::unique_ptr<VtConnectionObserver> mirror = mirrored(path);
    const MixedValues mixedValues{mirrorOf(path)};
};

class PeerUpdates : public Updates
{
public:
    PeerUpdates()
    {
        node.connectToNode(QUrl(process().readyWords().value(2)));
        for (int n = 0; n < mixed::valueCount / mixed::typeCount; ++n)
            acquire(QString::number(n));
    }

private:
    void acquire(const QString &name)
    {
        replicas.emplace_back(node.acquire<MixedReplica>(name));
        MixedReplica *const replica = replicas.back().get();
        waitFor([replica] { return replica->isInitialized(); }, "the replica has its values");
        const auto count = [this] { countOne(); };
        QObject::connect(replica, &MixedReplica::textChanged, replica, count);
        QObject::connect(replica, &MixedReplica::numberChanged, replica, count);
        QObject::connect(replica, &MixedReplica::realChanged, replica, count);
        QObject::connect(replica, &MixedReplica::flagChanged, replica, count);
        QObject::connect(replica, &MixedReplica::stampChanged, replica, count);
        QObject::connect(replica, &MixedReplica::countChanged, replica, count);
    }
    bool isAsSet(int update) const override
    {
        const MixedReplica &replica = *replicas[static_cast<std::size_t>(update % mixed::valueCount / mixed::typeCount)];
        switch (update % mixed::typeCount) {
        case 0: return replica.text() == mixed::text(update);
        case 1: return replica.number() == mixed::number(update);
        case 2: return replica.real() == mixed::real(update);
        case 3: return replica.flag() == mixed::flag(update);
        case 4: return replica.stamp() == mixed::stamp(update);
        default: return replica.count() == mixed::count(update);
        }
    }
    ServiceProcess &process() const override { return Service::peer(); }

    QRemoteObjectNode node;
    std::vector<std::unique_ptr<MixedReplica>> replicas;
};

template <typename Side> void updates(benchmark::State &state)
{
    static Updates &side = *new Side; // never destroyed: the ORB may end first
    side.run();
    side.check();
    while (state.KeepRunningBatch(mixed::updatesPerRound))
        side.run();
    side.check();
}

// Times are per update.
BENCHMARK(updates<MirrorUpdates>)->Name("mirror.updates/ours")->UseRealTime();
BENCHMARK(updates<PeerUpdates>)->Name("mirror.updates/floor")->UseRealTime();
BENCHMARK(updates<MirrorUpdates>)->Name("mirror.conflict/floor")->UseRealTime();

} // namespace

#include "benchmarks/remote/bare.hh"
#include "benchmarks/remote/mirroredtree.h"
#include "benchmarks/remote/onecpu.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

using namespace values;

namespace
{

constexpr int changeCount = 2000;

/// Gathers how long changes were on their way; each carries the time at which it was made.
class Arrivals
{
public:
    void arrived(qint64 sentNs) { latencies.push_back(nowNs() - sentNs); }

    /// Has one change after another made by @p line, each once the one before it has arrived.
    void gather(const char *line)
    {
        const OneCpu pinned(Service::instance().processes());
        latencies.clear();
        for (std::size_t count = 1; count <= changeCount; ++count) {
            Service::instance().process().tell(line);
            waitFor([this, count] { return latencies.size() >= count; }, "a change arrives");
        }
        require(latencies.size() == changeCount, "a change arrives once");
        std::sort(latencies.begin(), latencies.end());
        require(latencies.front() > 0 && latencies.back() < 1000000000, "a change carries its time");
    }
    double secondsAt(int percentile) const
    {
        return static_cast<double>(latencies[static_cast<std::size_t>(percentile * (changeCount - 1) / 100)]) / 1e9;
    }

private:
    std::vector<qint64> latencies;
};

/// A mirrored value with an observer.
class MirroredStamp : public IObserver
{
public:
    static constexpr char line[] = "stamp";

    MirroredStamp()
    {
        ValueBase *const found = Tree::Instance().findValue(mirrorOf(path + QLatin1String("/Stamp")));
        value = dynamic_cast<Value<qint64> *>(found);
        require(value, "the value is mirrored");
        value->AddObserver(this);
    }
    void Update(Observable *, TChangeCode code) override
    {
        if (code == ChangeCodeValue)
            arrivals.arrived(value->GetValue());
    }

    Arrivals arrivals;

private:
    const QString path = QStringLiteral("/Latency");
    const std::unique_ptr<VtConnectionObserver> mirror = mirrored(path);
    Value<qint64> *value = nullptr;
};

/// A thread that reads from pending calls and posts one event for each change.
class BareReader : public QObject
{
public:
    static constexpr char line[] = "barestamp";

    BareReader()
    {
        Service &service = Service::instance();
        const CORBA::Object_var object =
            service.orb().orb()->string_to_object(service.readyWord(2).toLatin1().constData());
        source = BARE::Source::_narrow(object);
        require(!CORBA::is_nil(source), "the bare source is there");
        std::thread([this] {
            try {
                read();
            } catch (const CORBA::Exception &) { // the other end ends with this program
            }
        }).detach();
    }

    Arrivals arrivals;

private:
    struct Arrival : QEvent {
        explicit Arrival(qint64 sentNs) : QEvent(User), sentNs(sentNs) {}
        const qint64 sentNs;
    };

    void read()
    {
        quint64 number = 0;
        for (;;) {
            const BARE::Delivery_var delivery = source->pull(number);
            if (delivery->number == 0)
                continue;
            number = delivery->number;
            qint64 sentNs = 0;
            std::memcpy(&sentNs, delivery->content.get_buffer(), sizeof sentNs);
            QCoreApplication::postEvent(this, new Arrival(sentNs));
        }
    }
    void customEvent(QEvent *event) override { arrivals.arrived(static_cast<Arrival *>(event)->sentNs); }

    BARE::Source_var source;
};

template <typename Receiver> Arrivals &arrivalsOf()
{
    static Receiver &receiver = *new Receiver; // never destroyed: the ORB may end first
    return receiver.arrivals;
}

template <typename Receiver, int percentile> void latency(benchmark::State &state)
{
    Arrivals &arrivals = arrivalsOf<Receiver>();
    for (auto _ : state) {
        arrivals.gather(Receiver::line);
        state.SetIterationTime(arrivals.secondsAt(percentile));
    }
}

void wholeRun(benchmark::internal::Benchmark *one)
{
    one->Iterations(1)->UseManualTime(); // a median or a percentile is of a run of changes
}

BENCHMARK(latency<MirroredStamp, 50>)->Name("mirror.latency/ours")->Apply(wholeRun);
BENCHMARK(latency<BareReader, 50>)->Name("mirror.latency/floor")->Apply(wholeRun);
BENCHMARK(latency<MirroredStamp, 99>)->Name("mirror.latency.p99/ours")->Apply(wholeRun);
BENCHMARK(latency<BareReader, 99>)->Name("mirror.latency.p99/floor")->Apply(wholeRun);

} // namespace

#include "benchmarks/remote/mirroredtree.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/remote/textvalues.h"
#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

#include <benchmark/benchmark.h>

#include <QDataStream>
#include <QTcpSocket>

#include <memory>
#include <unordered_map>

using namespace values;

namespace
{

struct PlainValue {
    QString path;
    QString content;
};
/// As a mirror's values are to be: each an object, found by its path.
using PlainValues = std::unordered_map<QString, std::unique_ptr<PlainValue>>;

void checkMirror()
{
    for (int n = 0; n < texts::count; ++n) {
        const QString path = QLatin1String(texts::top) + texts::path(n);
        const ValueBase *const value = Tree::Instance().findValue(mirrorOf(path));
        require(value && value->GetStringValue() == texts::content(n), "each value is mirrored");
    }
}

void keep(PlainValues &values, PlainValue &&value)
{
    auto kept = std::make_unique<PlainValue>(std::move(value));
    values.emplace(kept->path, std::move(kept));
}

/// In the order in which they came, to be found by nobody.
using ValueList = std::vector<PlainValue>;

void keep(ValueList &values, PlainValue &&value)
{
    values.push_back(std::move(value));
}

template <typename Values> Values received()
{
    QTcpSocket socket;
    QDataStream stream(&socket);
    Values values;
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket, [&] {
        for (;;) {
            PlainValue value;
            stream.startTransaction();
            stream >> value.path >> value.content;
            if (!stream.commitTransaction())
                return;
            keep(values, std::move(value));
        }
    });
    Service &service = Service::instance();
    socket.connectToHost(service.address(), service.readyWord(3).toUShort());
    waitFor([&values] { return values.size() == texts::count; }, "all values come by the socket");
    return values;
}

void requireContent(const PlainValue &value, int n)
{
    require(value.path == texts::path(n) && value.content == texts::content(n), "each value comes by the socket");
}

void check(const PlainValues &values)
{
    for (int n = 0; n < texts::count; ++n) {
        const auto found = values.find(texts::path(n));
        require(found != values.end(), "each value is found");
        requireContent(*found->second, n);
    }
}

void check(const ValueList &values)
{
    for (int n = 0; n < texts::count; ++n)
        requireContent(values[static_cast<std::size_t>(n)], n);
}

void snapshotOurs(benchmark::State &state)
{
    const QString path = QLatin1String(texts::top);
    for (auto _ : state) {
        std::unique_ptr<VtConnectionObserver> mirror;
        state.SetIterationTime(secondsOf([&] { mirror = mirrored(path); }));
        checkMirror();
        mirror.reset();
        Tree::Instance().removeNode(mirrorOf(path));
    }
}

template <typename Values> void snapshotFloor(benchmark::State &state)
{
    for (auto _ : state) {
        Values values;
        state.SetIterationTime(secondsOf([&] { values = received<Values>(); }));
        check(values);
    }
}

BENCHMARK(snapshotOurs)->Name("mirror.snapshot/ours")->UseManualTime();
BENCHMARK(snapshotFloor<PlainValues>)->Name("mirror.snapshot/floor")->UseManualTime();
BENCHMARK(snapshotOurs)->Name("mirror.snapshot.list/ours")->UseManualTime();
BENCHMARK(snapshotFloor<ValueList>)->Name("mirror.snapshot.list/floor")->UseManualTime();

} // namespace

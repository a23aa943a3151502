#include "benchmarks/remote/mixedcontent.h"

#include "tests/support/commandinput.h"

#include <QRemoteObjectHost>

#include <rep_mixed_source.h>

#include <iostream>
#include <memory>
#include <vector>

namespace
{

void update(std::vector<std::unique_ptr<MixedSimpleSource>> &sources, int n)
{
    MixedSimpleSource &source = *sources[static_cast<std::size_t>(n % mixed::valueCount / mixed::typeCount)];
    switch (n % mixed::typeCount) {
    case 0: return source.setText(mixed::text(n));
    case 1: return source.setNumber(mixed::number(n));
    case 2: return source.setReal(mixed::real(n));
    case 3: return source.setFlag(mixed::flag(n));
    case 4: return source.setStamp(mixed::stamp(n));
    case 5: return source.setCount(mixed::count(n));
    }
}

} // namespace

/// The 600 values as properties of 100 remote objects, "0" to "99", at an address that it prints. Input: `update FROM
/// TO` makes the updates from one number up to, not with, the other.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QRemoteObjectHost host(QUrl(QStringLiteral("local:korve-benchmark-%1").arg(QCoreApplication::applicationPid())));
    std::vector<std::unique_ptr<MixedSimpleSource>> sources;
    for (int n = 0; n < mixed::valueCount / mixed::typeCount; ++n) {
        sources.push_back(std::make_unique<MixedSimpleSource>());
        host.enableRemoting(sources.back().get(), QString::number(n));
    }
    const CommandInput input([&](const QStringList &words) {
        for (int n = words.value(1).toInt(); words[0] == QLatin1String("update") && n < words.value(2).toInt(); ++n)
            update(sources, n);
    });
    std::cout << "ready peer " << host.hostUrl().toString().toStdString() << std::endl;
    return QCoreApplication::exec();
}

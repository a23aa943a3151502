#include "benchmarks/remote/mirroredtree.h"

#include "benchmarks/remote/service.h"

std::unique_ptr<VtConnectionObserver> mirrored(const QString &path)
{
    const VtConnectData address{QString(), Service::instance().address()};
    auto observer = std::make_unique<VtConnectionObserver>(path, mirrorOf(path), address, QString());
    waitFor([&observer] { return observer->isConnected(); }, "the tree is mirrored");
    return observer;
}

QString mirrorOf(const QString &path)
{
    return QStringLiteral("/Mirror") + path;
}

#pragma once

#include "coresupport/iobserver.h"
#include "coresupport/trace.h"
#include "orbconnection/mirrorwire.h"

#include <memory>

namespace values
{
class ValueBase;
}

namespace mirror
{
/// The originator of changes that a client of this process has made: mirrors pass them on to their own servers.
class ClientOriginator : public IObserver
{
public:
    void Update(Observable *, TChangeCode) override {}
};

/// Makes a value of the class and content that @p record says, for @p path. Null, with a trace, when this program does
/// not know the class, or the content is none.
std::unique_ptr<values::ValueBase> makeValue(const Record &record, const QString &path, IObserver *originator);

/// Whether @p value is of the class that @p record says.
bool isOfClass(const values::ValueBase &value, const Record &record);

/// Runs an action that may tell observers. What one of them throws is traced, and goes no further.
template <typename Action> void tellObservers(const char *sourceName, const Action &action)
{
    try {
        action();
    } catch (const std::exception &e) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("An observer is in trouble: %1").arg(QString::fromUtf8(e.what())); });
    } catch (...) { // an application may throw what it likes
        traceAt(TraceLevel::Normal, sourceName, [] { return QStringLiteral("An observer is in trouble"); });
    }
}
} // namespace mirror

#pragma once

#include "korvebase/korvebase_export.h"

class QObject;
class QString;
class QThread;

namespace KorveCommon
{
/// Joins a worker to a thread of its own: the thread's start starts the worker, the worker's end ends the thread, and
/// both then delete themselves. The caller starts the thread.
///
/// A worker is any QObject without parent that has a slot `start()` and a signal `finished()`.
class KORVEBASE_EXPORT ThreadHelper
{
public:
    static void SetupThreadWorker(QObject *worker, QThread *thread, const QString &name);
    /// As SetupThreadWorker(); the thread object is moved to the application's thread first. Thread: the one that
    /// @p thread lives in.
    static void SetupThreadWorkerInMainThread(QObject *worker, QThread *thread, const QString &name);
};
} // namespace KorveCommon

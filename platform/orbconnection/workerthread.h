#pragma once

#include <QObject>
#include <QThread>

#include <memory>
#include <utility>

namespace CorbaCommon
{
/// A thread with an event loop and one object that lives on it: for remote calls, which would block others.
template <typename Worker> class WorkerThread
{
public:
    /// Moves @p newWorker there and calls its start().
    explicit WorkerThread(const char *name, std::unique_ptr<Worker> newWorker) : worker(newWorker.release())
    {
        thread.setObjectName(QLatin1String(name));
        worker->moveToThread(&thread);
        QObject::connect(&thread, &QThread::started, worker, &Worker::start);
        QObject::connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
        thread.start();
    }
    WorkerThread(const WorkerThread &) = delete;
    /// Waits for what the worker is doing.
    ~WorkerThread()
    {
        thread.quit();
        thread.wait();
    }

    /// Waits until somebody there has ended the thread's event loop.
    void join() { thread.wait(); }
    /// Runs @p call(worker) there, later, in the order of posting.
    template <typename Call> void post(Call call)
    {
        QMetaObject::invokeMethod(
            worker, [worker = worker, call = std::move(call)] { call(*worker); }, Qt::QueuedConnection);
    }
    Worker *operator->() const { return worker; }

private:
    QThread thread;
    Worker *const worker; // the thread's end deletes it
};
} // namespace CorbaCommon

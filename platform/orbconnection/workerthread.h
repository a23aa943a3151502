#pragma once

#include "orbconnection/callqueue.h"

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
        calls->moveToThread(&thread);
        QObject::connect(&thread, &QThread::started, worker, &Worker::start);
        QObject::connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
        QObject::connect(&thread, &QThread::finished, calls, &QObject::deleteLater);
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
        calls->post([worker = worker, call = std::move(call)] { call(*worker); });
    }
    Worker *operator->() const { return worker; }

private:
    QThread thread;
    // The thread's end deletes both.
    Worker *const worker;
    CallQueue *const calls = new CallQueue;
};
} // namespace CorbaCommon

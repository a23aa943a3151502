#pragma once

#include "installation/manager/export.h"

#include <atomic>
#include <list>
#include <mutex>
#include <thread>

namespace installation
{

/// The exports that are running, each on a thread of its own. Thread: any.
class Exports
{
public:
    /// At once; more would share the disk of the recorders too finely.
    static constexpr std::ptrdiff_t maximumExports = 8;

    Exports(ServedObjects objects, std::shared_ptr<const DeviceDirectory> directory,
            const ManagerConfiguration::Timing &timing);
    /// As stop().
    ~Exports();
    Exports(const Exports &) = delete;

    /// Cancels them and waits, bounded, for their ends; none is begun any more.
    void stop();

    /// Does not wait for the export.
    /// @throws std::runtime_error that says why there is no export: too many, or one with that id.
    void start(const ExportOrder &order);
    /// Does not wait for the end. False when there is no such export.
    bool cancel(const QString &id);

private:
    struct Running {
        explicit Running(std::unique_ptr<Export> work) : work(std::move(work)) {}
        const std::unique_ptr<Export> work;
        std::atomic<bool> done = false;
        std::thread thread;
    };

    std::list<Running>::iterator find(const QString &id);
    void reap();

    const ServedObjects objects;
    const std::shared_ptr<const DeviceDirectory> directory;
    const ManagerConfiguration::Timing timing;
    std::mutex mutex; // guards the list; not held during calls
    std::list<Running> running;
    bool stopped = false;
};

} // namespace installation

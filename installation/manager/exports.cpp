#include "installation/manager/exports.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace installation
{

Exports::Exports(ServedObjects objects, std::shared_ptr<const DeviceDirectory> directory,
                 const ManagerConfiguration::Timing &timing)
    : objects(std::move(objects)), directory(std::move(directory)), timing(timing)
{
}

Exports::~Exports()
{
    stop();
}

void Exports::stop()
{
    std::list<Running> ending; // joined without the lock
    {
        const std::scoped_lock lock(mutex);
        stopped = true;
        ending.swap(running);
    }
    for (const Running &one : ending)
        one.work->cancel();
    for (Running &one : ending)
        one.thread.join();
}

void Exports::start(const ExportOrder &order)
{
    auto work = std::make_unique<Export>(order, objects, directory, timing);
    const std::scoped_lock lock(mutex);
    if (stopped)
        throw std::runtime_error("the manager is ending");
    reap();
    if (std::ranges::count_if(running, [](const Running &one) { return !one.work->isOver(); }) >= maximumExports)
        throw std::runtime_error("there are too many exports at once");
    if (find(order.id) != running.end())
        throw std::runtime_error("export " + order.id.toStdString() + " is running already");
    Running &started = running.emplace_back(std::move(work));
    try {
        started.thread = std::thread([&started] {
            started.work->run();
            started.done = true;
        });
    } catch (const std::system_error &error) { // no thread to be had
        running.pop_back();
        throw std::runtime_error(error.what());
    }
}

bool Exports::cancel(const QString &id)
{
    const std::scoped_lock lock(mutex);
    const auto found = find(id);
    if (found == running.end())
        return false;
    found->work->cancel();
    return true;
}

std::list<Exports::Running>::iterator Exports::find(const QString &id)
{
    return std::ranges::find_if(running,
                                [&](const Running &one) { return !one.work->isOver() && one.work->id() == id; });
}

void Exports::reap()
{
    running.remove_if([](Running &one) {
        if (one.done)
            one.thread.join();
        return one.done.load();
    });
}

} // namespace installation

#include "benchmarks/remote/onecpu.h"

#include "benchmarks/support/require.h"

#include <filesystem>

#include <sched.h>
#include <unistd.h>

namespace
{

cpu_set_t allowed()
{
    cpu_set_t set;
    require(sched_getaffinity(0, sizeof set, &set) == 0, "the CPUs can be asked for");
    return set;
}

const cpu_set_t allCpus = allowed();

/// The one at that place of all that there are, which begin again behind the last.
cpu_set_t oneCpu(std::size_t place)
{
    std::size_t left = place % static_cast<std::size_t>(CPU_COUNT(&allCpus));
    std::size_t cpu = 0;
    while (!CPU_ISSET(cpu, &allCpus) || left-- > 0)
        ++cpu;
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(cpu, &set);
    return set;
}

void keepOn(const cpu_set_t &cpus, const std::vector<qint64> &processes)
{
    for (const qint64 process : processes)
        for (const auto &thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task"))
            sched_setaffinity(std::stoi(thread.path().filename()), sizeof cpus, &cpus); // fails for one that has ended
}

} // namespace

OneCpu::OneCpu(const std::vector<qint64> &processes) : processes(processes)
{
    keepOn(oneCpu(0), processes);
    const cpu_set_t now = allowed();
    require(CPU_COUNT(&now) == 1, "this thread is on one CPU");
}

OneCpu::~OneCpu()
{
    keepOn(allCpus, processes);
}

OneCpuEach::OneCpuEach(const std::vector<qint64> &processes) : processes(processes)
{
    for (std::size_t place = 0; place < processes.size(); ++place)
        keepOn(oneCpu(place), {processes[place]});
}

OneCpuEach::~OneCpuEach()
{
    keepOn(allCpus, processes);
}

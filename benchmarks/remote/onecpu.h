#pragma once

#include <QtGlobal>

#include <vector>

/// Keeps all threads of some processes, and those that they start, on one CPU for as long as it lives.
class OneCpu
{
public:
    explicit OneCpu(const std::vector<qint64> &processes);
    OneCpu(const OneCpu &) = delete;
    ~OneCpu();

private:
    const std::vector<qint64> processes;
};

/// Keeps each of some processes on a CPU of its own, as far as there are enough, for as long as it lives.
class OneCpuEach
{
public:
    explicit OneCpuEach(const std::vector<qint64> &processes);
    OneCpuEach(const OneCpuEach &) = delete;
    ~OneCpuEach();

private:
    const std::vector<qint64> processes;
};

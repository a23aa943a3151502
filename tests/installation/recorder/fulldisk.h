#pragma once

#include <sys/resource.h>

#include <csignal>

/// While it lives, files longer than a limit are refused, like those on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t limitBytes) : handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &limitsBefore);
        const rlimit small{limitBytes, limitsBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    FullDisk(const FullDisk &) = delete;
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &limitsBefore);
        std::signal(SIGXFSZ, handlerBefore);
    }

private:
    void (*const handlerBefore)(int);
    rlimit limitsBefore{};
};

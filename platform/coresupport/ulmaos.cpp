#include "coresupport/ulmaos.h"

#include "coresupport/tcpprobe.h"

namespace
{
constexpr std::chrono::seconds timeLimit{1};
}

UlmaOS &UlmaOS::GetInstance()
{
    static UlmaOS instance;
    return instance;
}

UlmaOS::ProbeReply UlmaOS::probe(const char *address, unsigned short port, int /*payloadBytes*/)
{
    const int error = tcpProbeError(address, port, timeLimit);
    return {error == 0, error};
}

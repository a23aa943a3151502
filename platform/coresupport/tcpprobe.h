#pragma once

#include <chrono>

/// 0 when @p port of @p host accepts a TCP connection within @p limit, else the `errno` of the last address tried.
///
/// Every address of a name is tried, all within the one limit. Blocks; a name is looked up first, outside the limit.
int tcpProbeError(const char *host, unsigned short port, std::chrono::milliseconds limit);

#include "connectionmanagement/iserverconnectiondata.h"

namespace KorveCommon
{
IServerConnectionData::IServerConnectionData() = default;

IServerConnectionData::~IServerConnectionData() = default;
} // namespace KorveCommon

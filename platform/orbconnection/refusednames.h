#pragma once

namespace CorbaCommon
{
/// Where the central object service lists who wants a name that somebody else holds: it has the names NAME/HOST:PORT
/// below this folder, each with the values HOST and PORT, for as long as that one is there and does not get NAME.
inline constexpr char refusedNames[] = "CentralObjectService/Refused/";
} // namespace CorbaCommon

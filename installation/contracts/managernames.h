#pragma once

namespace installation
{

/// What the recorder manager of a subsystem has at the central object service: itself, and the address of its tree.
inline constexpr char managerName[] = "KorveManager/IF_KRV_c_KRV";
inline constexpr char managersTreeName[] = "KorveManager/VTConnect";

} // namespace installation

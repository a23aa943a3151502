#pragma once

/// What KorveGuiToServerCorbaHandler::getAllRecords() answers.
namespace KorveGUI::recordlist
{
// contract: these numbers
inline constexpr unsigned long success = 0;
inline constexpr unsigned long managerNotReachable = 201; ///< or not connected, or its answer took too long
inline constexpr unsigned long deviceUnknown = 202;
inline constexpr unsigned long refused = 203; ///< the manager cannot list them, such as when the device is away
inline constexpr unsigned long failed = 205;
} // namespace KorveGUI::recordlist

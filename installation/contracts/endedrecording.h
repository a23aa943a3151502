#pragma once

namespace installation
{

/// How the entry of a record's history begins that says why its recording ended by itself: not since its source ended,
/// but since the link failed or the disk was full. The reason stands behind it.
inline constexpr char endedByItself[] = "The recording ended by itself: ";

} // namespace installation

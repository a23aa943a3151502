#pragma once

#include <QString>

namespace installation::recorder
{

/// Printable ASCII without blanks and "/": a name in the value tree, and the same bytes in every encoding.
bool isDeviceId(const QString &text);

/// The id of the device whose state is in the folder @p statePath, when the settings name none: the one that it has had,
/// else "KORVE-" and @p address, so that two new hosts have two. A state with recordings that says none is of the time
/// when all were "KORVE1".
/// @throws RecorderError when the file that keeps it cannot be read, or holds no id.
QString deviceIdOf(const QString &statePath, const QString &address);

/// Keeps @p id for deviceIdOf(), also in place of a damaged one. A failure, such as a full disk, is traced.
void keepDeviceId(const QString &statePath, const QString &id);

} // namespace installation::recorder

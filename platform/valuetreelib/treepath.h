#pragma once

#include <QString>

namespace values
{
/// The one form in which the tree keeps a path: "/a/b"; empty parts are ignored, a relative path starts at the root.
QString normalizedPath(const QString &path);
bool isNormalizedPath(const QString &path);

/// For normalised paths: the path of what stands above, and whether one stands (anywhere) below @p top, at any depth.
QStringView parentPath(QStringView path);
bool isPathBelow(const QString &path, const QString &top);
} // namespace values

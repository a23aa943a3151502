#include "valuetreelib/treepath.h"

#include <QVector>

#include <algorithm>

namespace values
{
bool isNormalizedPath(const QString &path)
{
    if (!path.startsWith(u'/'))
        return false;
    const auto areSlashes = [](QChar a, QChar b) { return a == u'/' && b == u'/'; };
    return path.size() == 1
        || (!path.endsWith(u'/') && std::adjacent_find(path.begin(), path.end(), areSlashes) == path.end());
}

QString normalizedPath(const QString &path)
{
    if (isNormalizedPath(path))
        return path;
    QString normalized;
    normalized.reserve(path.size() + 1);
    for (const QStringRef &part : path.splitRef(u'/', Qt::SkipEmptyParts)) {
        normalized += u'/';
        normalized += part;
    }
    return normalized.isEmpty() ? QStringLiteral("/") : normalized;
}

QString parentPath(const QString &path)
{
    const int end = path.lastIndexOf(u'/');
    return end <= 0 ? QStringLiteral("/") : path.left(end);
}

bool isPathBelow(const QString &path, const QString &top)
{
    if (top.size() == 1)
        return path.size() > 1;
    return path.size() > top.size() && path.at(top.size()) == u'/' && path.startsWith(top);
}
} // namespace values

#include "valuetreelib/treepath.h"

#include <QVector>

#include <algorithm>

namespace values
{
bool isNormalizedPath(const QString &path)
{
    const ushort *const units = path.utf16();
    const int last = path.size() - 1;
    if (last < 0 || units[0] != u'/')
        return false;
    // To the end in any case: so the processor looks at many at a time.
    ushort found = last > 0 && units[last] == u'/';
    for (int i = 0; i < last; ++i)
        found |= static_cast<ushort>((units[i] == u'/') & (units[i + 1] == u'/'));
    return !found;
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

QStringView parentPath(QStringView path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf(u'/'), 1));
}

bool isPathBelow(const QString &path, const QString &top)
{
    if (top.size() == 1)
        return path.size() > 1;
    return path.size() > top.size() && path.at(top.size()) == u'/' && path.startsWith(top);
}
} // namespace values

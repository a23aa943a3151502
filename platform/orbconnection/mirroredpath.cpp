#include "orbconnection/mirroredpath.h"

#include <QStringList>

namespace mirror
{
MirroredPath::MirroredPath(const QString &path)
    : topPath(u'/' + path.split(u'/', Qt::SkipEmptyParts).join(u'/')),
      prefix(topPath.endsWith(u'/') ? topPath : topPath + u'/')
{
}

QString MirroredPath::absolute(const QString &relative) const
{
    if (relative.isEmpty())
        return topPath;
    QString path;
    path.reserve(prefix.size() + relative.size()); // exactly: values keep it
    return path.append(prefix).append(relative);
}

std::optional<QString> MirroredPath::relative(const QString &absolute) const
{
    if (absolute == topPath)
        return QString();
    if (!absolute.startsWith(prefix))
        return std::nullopt;
    return absolute.mid(prefix.size());
}
} // namespace mirror

#include "orbconnection/mirroredpath.h"

#include "orbconnection/mirrorwire.h"

#include <QStringBuilder>
#include <QStringList>

namespace mirror
{
namespace
{
bool isAscii(std::string_view text)
{
    unsigned char bits = 0;
    for (const char character : text)
        bits |= static_cast<unsigned char>(character);
    return bits < 0x80;
}
} // namespace

MirroredPath::MirroredPath(const QString &path)
    : topPath(u'/' + path.split(u'/', Qt::SkipEmptyParts).join(u'/')),
      prefix(topPath.endsWith(u'/') ? topPath : topPath + u'/')
{
}

QString MirroredPath::absolute(std::string_view relative) const
{
    if (relative.empty())
        return topPath;
    // In one piece and exactly as long as it has to be: values keep it.
    if (isAscii(relative))
        return prefix % QLatin1String(relative.data(), static_cast<int>(relative.size()));
    // Behind the "/", as a byte order mark at the beginning of a text would be lost.
    return topPath.left(prefix.size() - 1) % textOf('/' + std::string(relative));
}

std::optional<QByteArray> MirroredPath::relative(const QString &absolute) const
{
    if (absolute == topPath)
        return QByteArray();
    if (!absolute.startsWith(prefix))
        return std::nullopt;
    return QStringView(absolute).mid(prefix.size()).toUtf8();
}
} // namespace mirror

#pragma once

#include <QString>

#include <algorithm>
#include <optional>
#include <string_view>

namespace mirror
{
/// The path of a mirrored node, and what is relative to it.
class MirroredPath
{
public:
    /// Empty parts of @p path are ignored.
    explicit MirroredPath(const QString &path);

    /// "/a/b", "/" for the root.
    const QString &top() const { return topPath; }
    /// The path that @p relative stands for in a record: it is in UTF-8, and "" is the node itself.
    QString absolute(std::string_view relative) const;
    /// How a record names a path at or below the node; nothing for any other.
    std::optional<QByteArray> relative(const QString &absolute) const;

private:
    QString topPath;
    QString prefix; // with "/" at the end
};

/// The path of the node that an item other than the root stands in.
inline QString nodeAbove(const QString &absolute)
{
    return absolute.left(std::max(absolute.lastIndexOf(u'/'), 1));
}
} // namespace mirror

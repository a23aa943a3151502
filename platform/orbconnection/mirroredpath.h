#pragma once

#include <QString>

#include <optional>

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
    /// "" stands for the node itself.
    QString absolute(const QString &relative) const;
    /// Of an absolute path at or below the node; nothing for any other.
    std::optional<QString> relative(const QString &absolute) const;

private:
    QString topPath;
    QString prefix; // with "/" at the end
};
} // namespace mirror

#pragma once

#include <QStringList>

#include <functional>
#include <vector>

namespace modeltest
{

/// One enumeration of one class, reached through the functions of that class. Enumerators are plain numbers here.
struct EnumerationAccess {
    QString className;
    QString name;
    std::function<QStringList()> literals;
    std::function<QStringList()> guiLiterals;
    std::function<QString(int)> toName;
    std::function<int(const QString &)> fromName;
    std::function<bool(int)> isValid;
};

/// All 49, in no order.
const std::vector<EnumerationAccess> &enumerationAccess();
/// Ends the program with a message if there is none of that name.
const EnumerationAccess &enumerationAccess(const QString &className, const QString &name);

} // namespace modeltest

#pragma once

#include "valuetreelib/valuetreelib_export.h"

#include <QString>

namespace values
{
/// One entry of a selection list.
class VALUETREELIB_EXPORT SelItemDesc
{
public:
    SelItemDesc(const QString &text, double number, long key) : text(text), value(number), itemKey(key) {}

    QString String() const { return text; }
    double number() const { return value; }
    long key() const { return itemKey; }

    bool operator==(const SelItemDesc &) const = default;

private:
    QString text;
    double value;
    long itemKey;
};

/// The items of a command that is carried out by a peer ("Start", "Stop", "Idle", keys 0 to 2)...
constexpr int svdCommandCount = 3;
VALUETREELIB_EXPORT extern const SelItemDesc g_svdCommand[svdCommandCount];
/// ...and of how it went ("None", "Running", "Done", "Failed", "Aborted", keys 0 to 4).
constexpr int svdResultCount = 5;
VALUETREELIB_EXPORT extern const SelItemDesc g_svdResult[svdResultCount];
} // namespace values

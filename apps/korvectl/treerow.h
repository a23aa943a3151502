#pragma once

#include "valuetreelib/valuebase.h"

#include <QJsonObject>

namespace korvectl
{

/// A value as it is at one moment, for people and for programs.
struct TreeRow {
    explicit TreeRow(const values::ValueBase &value);

    /// "path", "type", "value" and "state"; the value as a truth value or a number, where it is one that
    /// JSON can tell exactly; else as text.
    QJsonObject object() const;

    QString path;
    QString type;
    QString text;
    QJsonValue content;
    values::TValueState state;
};

/// "valid", "deleted", "seeded" or "connection lost".
QString wordsFor(values::TValueState state);

} // namespace korvectl

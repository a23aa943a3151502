#pragma once

#include "objectbase/objectbase_export.h"

class QDateTime;
class QString;

namespace REPORTGENERATOR
{

/// The one text form of date and time that objects use; each operation is the inverse of the other.
///
/// The form is ISO 8601 with milliseconds and the time spec: "2026-03-01T12:00:00.250" in local time, a trailing "Z"
/// for UTC, an offset such as "+02:00" otherwise. A null date is the empty text.
class OBJECTBASE_EXPORT Converters
{
public:
    static QString ToString(const QDateTime &time);
    /// A text that is no date gives a null date.
    static QDateTime ToDateTime(const QString &text);
};

} // namespace REPORTGENERATOR

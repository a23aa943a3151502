#pragma once

#include "korvebase/korvebase_export.h"

#include <QString>

namespace KorveCommon
{

/// A time stamp of a record (microseconds since 1970, UTC) as "yyyy-MM-dd hh:mm:ss" in local time. Thread: any.
KORVEBASE_EXPORT QString UTCtoLocalString(const qint64 &timestampUs);
/// The same in UTC.
KORVEBASE_EXPORT QString UTCtoUTCString(const qint64 &timestampUs);

} // namespace KorveCommon

using KorveCommon::UTCtoLocalString;
using KorveCommon::UTCtoUTCString;

#include "korvebase/timestrings.h"

#include "coresupport/datetime.h"

namespace KorveCommon
{

QString UTCtoLocalString(const qint64 &timestampUs)
{
    Ulma::DateTime time(static_cast<quint64>(timestampUs));
    time.setTimeZone(Ulma::DateTime::Local_TimeZone);
    return time.toString();
}

QString UTCtoUTCString(const qint64 &timestampUs)
{
    Ulma::DateTime time;
    time.setFormat(QStringLiteral("yyyy-MM-dd hh:mm:ss")); // contract: also where the default format is another
    time.setTimestamp(static_cast<quint64>(timestampUs));
    return time.toString();
}

} // namespace KorveCommon

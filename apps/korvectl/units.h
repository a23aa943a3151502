#pragma once

#include <QString>

/// Quantities as people read them; numbers have a decimal point everywhere.
namespace korvectl::units
{

/// "999 B", "16.0 kB", "1.5 GB"; a thousand of each is one of the next.
QString bytes(quint64 count);
/// "1:02:03.004", hours first.
QString duration(quint64 us);
/// "0.3 ms", "120 ms", "2.5 s".
QString elapsed(quint64 us);
/// "-0.012 s"; "0.000 s" without a sign.
QString offset(double seconds);
/// "2026-03-01 12:00:00", in UTC; since 1970.
QString instant(quint64 us);
/// "2026-03-01T12:00:00.000001Z": the whole time stamp, in the form in which the command line takes it; just the number
/// of a time beyond the year 9999.
QString exactInstant(quint64 us);
/// "12:00:00.001": now, of this host.
QString timeOfDay();
/// "16.0 kB/s"; "-" for no time at all.
QString rate(quint64 byteCount, quint64 us);

} // namespace korvectl::units

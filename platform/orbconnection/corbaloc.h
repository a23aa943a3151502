#pragma once

#include <QString>

namespace CorbaCommon
{
/// The reference, as text, of the object with @p key at @p host and @p port; empty when that is no address. It can
/// carry no wide strings.
QString corbaloc(const QString &host, int port, const char *key);
} // namespace CorbaCommon

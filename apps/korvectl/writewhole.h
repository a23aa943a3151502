#pragma once

#include <QByteArray>

class QFileDevice;

namespace korvectl
{

/// Writes all of @p bytes; when false, errorString() of @p file says why not, also where some could be written.
bool writeWhole(QFileDevice &file, const QByteArray &bytes);

} // namespace korvectl

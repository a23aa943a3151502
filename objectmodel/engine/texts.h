#pragma once

#include "objectmodel/engine/typeinfo.h"

#include <QStringView>

/// Values as the text that XML and tagged form carry, and back.
namespace KORVE_XML::engine
{

/// The text of a value that is no object.
QString textOf(const MemberInfo &member, const void *value);
/// Fixed notation with two decimals.
QString textOf(double value);

/// False for "0" and "false" in any case, true for anything else; the text is not empty.
bool toBoolean(QStringView text);
/// 0 for what is no number, as QString::toInt says it.
qint32 toInt32(QStringView text);
/// 0 for what is no number, as QString::toLongLong says it.
qint64 toInt64(QStringView text);

} // namespace KORVE_XML::engine

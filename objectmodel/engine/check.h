#pragma once

#include "objectmodel/engine/access.h"

namespace KORVE_XML::engine
{

/// Throws at the first member that is missing or holds what it may not; scalars come before objects and lists.
void check(const Self &self);
/// The same on a record: @p name is the object that the texts speak of.
void check(const Record &record, const TypeInfo &type, const QString &name);
/// Whether the object may be written: with validation on it is checked (and throws), and must have data.
bool mayBeWritten(const Self &self, const Record &record);

} // namespace KORVE_XML::engine

#pragma once

#include "objectmodel/engine/access.h"

class QDataStream;

/// The compact form: presence bits and bare values, without tags, lengths or validation.
namespace KORVE_XML::engine
{

void writeCompact(const Self &self, QDataStream &out);
/// Replaces what the object holds. Bytes that end early or cannot be right leave the stream's status at ReadPastEnd or
/// ReadCorruptData and the rest of the object at its defaults.
void readCompact(const Self &self, IRGObject &object, QDataStream &in);

} // namespace KORVE_XML::engine

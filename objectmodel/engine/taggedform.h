#pragma once

#include "objectmodel/engine/access.h"

class QDataStream;

/// The tagged form: frames of tag, length and payload, in the stream's byte order.
namespace KORVE_XML::engine
{

/// Writes the object's frame, the tag only with @p writeId. False when validation is on and the object has no data.
bool writeTagged(const Self &self, QDataStream &out, int id, bool writeId);
/// Reads a payload of @p length bytes into the object; nothing beyond them is taken from the stream.
void readTagged(const Self &self, IRGObject &object, QDataStream &in, int length);

} // namespace KORVE_XML::engine

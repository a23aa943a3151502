#pragma once

#include "objectmodel/engine/access.h"

class QXmlStreamReader;
class QXmlStreamWriter;

/// The XML form.
namespace KORVE_XML::engine
{

/// Writes the object's element, or nothing when validation is on and the object has no data.
void writeXml(const Self &self, QXmlStreamWriter &writer);

/// The reader stands on the object's start element: takes its attributes.
void readXmlAttributes(const Self &self, IRGObject &object, QXmlStreamReader &reader);
/// The reader stands on a child's start element: takes the child, or steps over one that is unknown.
void readXmlElement(const Self &self, QXmlStreamReader &reader);

} // namespace KORVE_XML::engine

#include "objectmodel/engine/xmlform.h"

#include "objectmodel/engine/assign.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/texts.h"
#include "objectmodel/engine/version.h"

#include "objectbase/converters.h"

#include <QVarLengthArray>
#include <QXmlStreamReader>

namespace KORVE_XML::engine
{

namespace
{

/// The text of the current element without that of its children. Leaves the reader on the element's end.
class ElementText
{
public:
    explicit ElementText(QXmlStreamReader &reader)
    {
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::Characters:
            case QXmlStreamReader::EntityReference: append(reader.text()); break;
            case QXmlStreamReader::StartElement: reader.skipCurrentElement(); break;
            case QXmlStreamReader::EndElement: return;
            default: break;
            }
        }
    }

    QStringView view() const { return {characters.constData(), characters.size()}; }

private:
    void append(const QStringRef &text) { characters.append(text.constData(), text.size()); }

    // Kept here, not in a QString: most values are numbers and literals, which need no storage of their own.
    QVarLengthArray<QChar, 128> characters;
};

bool booleanOf(const Target &target, const MemberInfo &member, QStringView text)
{
    if (!text.isEmpty())
        return toBoolean(text);
    if (member.is(RefusesEmptyText) && target.validate)
        throwEmptyBoolean(target.object.GetObjectName(), member.name);
    return member.defaultValue;
}

/// An empty text is not null: the member was given.
QString textValue(QStringView text)
{
    return text.isEmpty() ? QStringLiteral("") : text.toString();
}

void readScalar(const Target &target, const MemberInfo &member, QStringView text)
{
    switch (member.kind) {
    case Kind::Text: return assign(target, member, textValue(text));
    case Kind::Boolean: return assign(target, member, booleanOf(target, member, text));
    case Kind::Int32: return assign(target, member, toInt32(text));
    // contract: unsigned numbers go through the signed conversion of their width; what lies beyond it becomes 0
    case Kind::UInt32: return assign(target, member, quint32(toInt32(text)));
    case Kind::Int64: return assign(target, member, toInt64(text));
    case Kind::UInt64: return assign(target, member, quint64(toInt64(text)));
    case Kind::Double: return assign(target, member, text.toString().toDouble());
    case Kind::DateTime:
        return assign(target, member, REPORTGENERATOR::Converters::ToDateTime(text.toString()));
    case Kind::Enumeration: return assignEnumeration(target, member, member.enumeration->toValue(text));
    case Kind::Object: break;
    }
    Q_ASSERT(false);
}

void readItem(const MemberInfo &member, void *item, QStringView text)
{
    if (member.kind == Kind::Text)
        valueAt<QString>(item) = textValue(text);
    else if (member.kind == Kind::Enumeration)
        setEnumerationAt(item, member.enumeration->toValue(text));
    else
        valueAt<qint32>(item) = toInt32(text);
}

void readListItem(const Target &target, const MemberInfo &member, QXmlStreamReader &reader)
{
    FreshItem fresh(target, member);
    if (member.holdsObjects())
        member.objectAt(fresh.value()).ProcessXml(reader);
    else
        readItem(member, fresh.value(), ElementText(reader).view());
    fresh.keep();
}

void readObject(Record &record, const MemberInfo &member, QXmlStreamReader &reader)
{
    markSet(record, member);
    member.objectAt(member.field(record)).ProcessXml(reader);
}

// contract: the next token of the same name ends the skip, be it a start or an end
void skipUnknown(QXmlStreamReader &reader)
{
    const QString name = reader.name().toString();
    do
        reader.readNext();
    while (!reader.atEnd() && reader.name() != name);
}

} // namespace

void readXmlAttributes(const Self &self, IRGObject &object, QXmlStreamReader &reader)
{
    recordOf(self);
    const auto &members = self.type.written;
    if (!self.type.facts.version && (members.empty() || !members.front()->is(Attribute)))
        return;
    const QXmlStreamAttributes attributes = reader.attributes();
    if (self.type.facts.version)
        takeVersion(self, object, attributes.value(versionAttribute).toString());
    for (const MemberInfo *member : members) {
        if (!member->is(Attribute))
            break;
        if (attributes.hasAttribute(member->name))
            readScalar({self.object, recordOf(self)}, *member, attributes.value(member->name));
    }
}

void readXmlElement(const Self &self, QXmlStreamReader &reader)
{
    const Target target(self.object, recordOf(self));
    const MemberInfo *member = self.type.memberOfElement(reader.name());
    if (!member && self.type.facts.refusesUnknownElements)
        throwUnknownTag(self.object.GetObjectName(), reader.name().toString());
    if (!member)
        skipUnknown(reader);
    else if (member->list)
        readListItem(target, *member, reader);
    else if (member->holdsObjects())
        readObject(target.record, *member, reader);
    else
        readScalar(target, *member, ElementText(reader).view());
}

} // namespace KORVE_XML::engine

#include "objectmodel/engine/xmlform.h"

#include "objectmodel/engine/check.h"
#include "objectmodel/engine/failure.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/texts.h"
#include "objectmodel/engine/version.h"
#include "objectmodel/engine/written.h"

#include <QXmlStreamWriter>

namespace KORVE_XML::engine
{

namespace
{

/// Writes a record and all that is nested in it; with validation on, everything has been checked before.
class XmlWriter
{
public:
    XmlWriter(QXmlStreamWriter &writer, bool validate) : writer(writer), validate(validate) {}

    void write(const Record &record, const TypeInfo &type, const QString &name)
    {
        writer.writeStartElement(name);
        if (type.facts.version)
            writer.writeAttribute(versionAttribute, type.facts.version->current);
        for (const MemberInfo *member : type.written) {
            if (isWritten(*member, record))
                writeMember(*member, member->field(record), name);
        }
        writer.writeEndElement();
    }

private:
    void writeMember(const MemberInfo &member, const void *field, const QString &owner)
    {
        if (!member.list)
            return writeValue(member, field, owner);
        const Items items = member.list->items(field);
        for (int position = 0; position < items.count; ++position)
            writeValue(member, items.at(position), owner);
    }

    void writeValue(const MemberInfo &member, const void *value, const QString &owner)
    {
        if (member.holdsObjects())
            writeObject(member, member.objectAt(value), owner);
        else if (member.is(Attribute))
            writer.writeAttribute(member.name, textOf(member, value));
        else
            writer.writeTextElement(member.name, textOf(member, value));
    }

    void writeObject(const MemberInfo &member, const IRGObject &object, const QString &owner)
    {
        const TypeInfo &type = *member.type;
        const Record &record = viewOf(object, type);
        if (validate && !hasData(record, type)) {
            if (member.is(MustHaveData))
                throwWithoutData(owner, member);
            return;
        }
        write(record, type, object.GetObjectName());
    }

    QXmlStreamWriter &writer;
    bool validate;
};

} // namespace

void writeXml(const Self &self, QXmlStreamWriter &writer)
{
    Record &record = recordOf(self);
    pushSettings(self, record);
    if (mayBeWritten(self, record))
        XmlWriter(writer, self.object.GetValidate()).write(record, self.type, self.object.GetObjectName());
}

} // namespace KORVE_XML::engine

#include "objectmodel/engine/taggedform.h"

#include "objectmodel/engine/bytebuffer.h"
#include "objectmodel/engine/check.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/texts.h"
#include "objectmodel/engine/values.h"
#include "objectmodel/engine/written.h"

namespace KORVE_XML::engine
{

namespace
{

/// Writes records into a buffer; with validation on, everything has been checked before.
class TaggedWriter
{
public:
    TaggedWriter(ByteBuffer &out, bool validate) : out(out), validate(validate) {}

    void write(const Record &record, const TypeInfo &type)
    {
        const int frame = out.openFrame();
        if (type.facts.version)
            writeVersion(*type.facts.version);
        for (const MemberInfo *member : type.written) {
            if (isWritten(*member, record))
                writeMember(*member, member->field(record));
        }
        out.closeFrame(frame);
    }

private:
    // contract: the version is a text of the stream, not a byte array like all other texts
    void writeVersion(const VersionInfo &version)
    {
        out.put(qint32(version.tag));
        const int frame = out.openFrame();
        out.putText(version.current);
        out.closeFrame(frame);
    }

    void writeMember(const MemberInfo &member, const void *field)
    {
        if (!member.list && member.holdsObjects())
            return writeObject(member, field, true);
        out.put(qint32(member.tag));
        const int frame = out.openFrame();
        if (member.list)
            writeItems(member, field);
        else
            writePayload(member, field);
        out.closeFrame(frame);
    }

    void writeItems(const MemberInfo &member, const void *list)
    {
        const Items items = member.list->items(list);
        out.put(qint32(items.count));
        for (int position = 0; position < items.count; ++position) {
            if (member.holdsObjects())
                writeObject(member, items.at(position), false);
            else
                writeItem(member, items.at(position));
        }
    }

    void writeItem(const MemberInfo &member, const void *item)
    {
        const int frame = out.openFrame();
        // contract: a number in a list goes out in 4 bytes, although the reader expects a byte array
        if (member.kind == Kind::Int32)
            out.put(valueAt<qint32>(item));
        else
            writePayload(member, item);
        out.closeFrame(frame);
    }

    void writeObject(const MemberInfo &member, const void *field, bool writeTag)
    {
        const TypeInfo &type = *member.type;
        const Record &record = viewAt(member, field);
        if (validate && !hasData(record, type))
            return;
        if (writeTag)
            out.put(qint32(member.tag));
        write(record, type);
    }

    void writePayload(const MemberInfo &member, const void *value)
    {
        switch (member.kind) {
        case Kind::Text: return out.putUtf8(valueAt<QString>(value));
        case Kind::Boolean: return out.put(quint8(valueAt<bool>(value)));
        case Kind::Int32:
        case Kind::UInt32:
        case Kind::Int64:
        case Kind::UInt64: return out.put(integerAt(member, value));
        case Kind::Double:
        case Kind::DateTime: return out.putUtf8(textOf(member, value));
        case Kind::Enumeration: return out.putBytes(member.enumeration->literal(enumerationAt(value)));
        case Kind::Object: break;
        }
        Q_ASSERT(false);
    }

    ByteBuffer &out;
    bool validate;
};

} // namespace

bool writeTagged(const Self &self, QDataStream &out, int id, bool writeId)
{
    Record &record = recordOf(self);
    pushSettings(self, record);
    if (!mayBeWritten(self, record))
        return false;
    ByteBuffer buffer(out);
    if (writeId)
        buffer.put(qint32(id));
    TaggedWriter(buffer, self.object.GetValidate()).write(record, self.type);
    buffer.writeTo(out);
    return true;
}

} // namespace KORVE_XML::engine

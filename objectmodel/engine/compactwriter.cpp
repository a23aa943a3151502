#include "objectmodel/engine/compactform.h"

#include "objectmodel/engine/bytebuffer.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/values.h"
#include "objectmodel/engine/written.h"

namespace KORVE_XML::engine
{

namespace
{

class CompactWriter
{
public:
    explicit CompactWriter(ByteBuffer &out) : out(out) {}

    void write(const Record &record, const TypeInfo &type)
    {
        const Bits bits = announced(record, type);
        out.putBits(bits.toWord(), int(type.facts.members.size() + 7) / 8);
        if (type.facts.version)
            out.putText(type.facts.version->current);
        for (Bits left = bits | type.alwaysWritten; !left.isEmpty();) {
            const MemberInfo &member = type.facts.members[std::size_t(left.takeFirst())];
            writeMember(member, member.field(record));
        }
    }

private:
    // An alternative that is not selected is not written, so its bit must not announce it.
    static Bits announced(const Record &record, const TypeInfo &type)
    {
        Bits bits = record.bits;
        for (const MemberInfo *member : type.alternatives) {
            if (!isSelected(*member, record))
                bits.clear(member->bit);
        }
        return bits;
    }

    void writeMember(const MemberInfo &member, const void *field)
    {
        if (!member.list)
            return writeValue(member, field);
        const Items items = member.list->items(field);
        out.put(qint32(items.count));
        for (int position = 0; position < items.count; ++position)
            writeValue(member, items.at(position));
    }

    void writeValue(const MemberInfo &member, const void *value)
    {
        switch (member.kind) {
        case Kind::Text: return out.putText(valueAt<QString>(value));
        case Kind::Boolean: return out.put(quint8(valueAt<bool>(value)));
        case Kind::Int32:
        case Kind::UInt32:
        case Kind::Int64:
        case Kind::UInt64: return out.put(integerAt(member, value));
        case Kind::Double: return out.putStreamed(valueAt<double>(value));
        case Kind::DateTime: return out.putStreamed(valueAt<QDateTime>(value));
        case Kind::Enumeration: return out.put(qint8(enumerationAt(value)));
        case Kind::Object: return write(viewAt(member, value), *member.type);
        }
    }

    ByteBuffer &out;
};

} // namespace

void writeCompact(const Self &self, QDataStream &out)
{
    ByteBuffer buffer(out);
    CompactWriter(buffer).write(recordOf(self), self.type);
    buffer.writeTo(out);
}

} // namespace KORVE_XML::engine

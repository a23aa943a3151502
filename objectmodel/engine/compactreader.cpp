#include "objectmodel/engine/compactform.h"

#include "objectmodel/engine/assign.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/streamwindow.h"
#include "objectmodel/engine/version.h"

#include <QTimeZone>
#include <QtEndian>

namespace KORVE_XML::engine
{

namespace
{

class CompactReader
{
public:
    explicit CompactReader(StreamWindow &in) : in(in) {}

    void read(const Self &self, IRGObject &object)
    {
        reset(self);
        const Bits bits = takeBits(self.type);
        if (self.type.facts.version)
            takeVersion(self, object, in.takeText());
        Record &record = recordOf(self);
        record.bits = bits;
        for (const MemberInfo &member : self.type.facts.members) {
            if (in.failed())
                return;
            if (bits.test(member.bit) || member.is(Mandatory))
                readMember(self, record, member);
        }
    }

private:
    /// Bits beyond the last member mean nothing.
    Bits takeBits(const TypeInfo &type)
    {
        const auto count = type.facts.members.size();
        char bytes[8] = {};
        in.takeRaw(bytes, int(count + 7) / 8);
        return qFromLittleEndian<quint64>(bytes) & ~quint64(0) >> (64 - count);
    }

    void readMember(const Self &self, Record &record, const MemberInfo &member)
    {
        void *field = member.field(record);
        if (member.list)
            return readItems(self, member, field);
        readValue(member, field);
        if (member.is(Alternative))
            record.choice = qint8(member.alternative);
    }

    void readItems(const Self &self, const MemberInfo &member, void *list)
    {
        const auto count = in.take<qint32>();
        // Each item takes a byte at least.
        if (count < 0 || count > in.left())
            return in.fail(QDataStream::ReadCorruptData);
        for (qint32 position = 0; position < count && !in.failed(); ++position) {
            void *item = member.list->append(list);
            if (member.holdsObjects())
                copySettings(self.object, member.objectAt(item));
            readValue(member, item);
        }
    }

    void readValue(const MemberInfo &member, void *value)
    {
        switch (member.kind) {
        case Kind::Text: valueAt<QString>(value) = in.takeText(); break;
        case Kind::Boolean: valueAt<bool>(value) = in.take<qint8>() != 0; break;
        case Kind::Int32: valueAt<qint32>(value) = qint32(in.take<qint64>()); break;
        case Kind::UInt32: valueAt<quint32>(value) = quint32(in.take<qint64>()); break;
        case Kind::Int64: valueAt<qint64>(value) = in.take<qint64>(); break;
        case Kind::UInt64: valueAt<quint64>(value) = quint64(in.take<qint64>()); break;
        case Kind::Double: valueAt<double>(value) = in.takeStreamed<double>(); break;
        case Kind::DateTime: valueAt<QDateTime>(value) = takeDateTime(); break;
        case Kind::Enumeration: setEnumerationAt(value, in.take<qint8>()); break;
        case Kind::Object: readObject(member, value); break;
        }
    }

    // Qt reads a zone that it does not know without a word, and crashes when it is to write it again.
    QDateTime takeDateTime()
    {
        const auto time = in.takeStreamed<QDateTime>();
        if (time.timeSpec() != Qt::TimeZone || time.timeZone().isValid())
            return time;
        in.fail(QDataStream::ReadCorruptData);
        return {};
    }

    void readObject(const MemberInfo &member, void *field)
    {
        IRGObject &object = member.objectAt(field);
        read({object, member.object->handle(field), *member.type}, object);
    }

    StreamWindow &in;
};

} // namespace

void readCompact(const Self &self, IRGObject &object, QDataStream &in)
{
    StreamWindow window(in);
    CompactReader(window).read(self, object);
}

} // namespace KORVE_XML::engine

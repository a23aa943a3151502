#include "objectmodel/engine/taggedform.h"

#include "objectmodel/engine/assign.h"
#include "objectmodel/engine/bytecursor.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/version.h"

#include "objectbase/converters.h"

#include <QDataStream>

namespace KORVE_XML::engine
{

namespace
{

constexpr int frameHeader = 8;

QString fromUtf8(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), int(bytes.size()));
}

/// Reads payloads from memory. One cursor serves an object and all that is nested in it: a wrong length of an element
/// is noticed by the running total of its object, or when the bytes of the outermost object are at an end.
class TaggedReader
{
public:
    /// @p in holds the bytes of @p outermost; @p isShort says that the stream had fewer of them than announced.
    TaggedReader(ByteCursor &in, const IRGObject &outermost, bool isShort)
        : in(in), outermost(outermost), isShort(isShort)
    {
    }

    void read(const Self &self, IRGObject &object, qint64 length)
    {
        const Target target(object, recordOf(self));
        std::size_t expected = 0;
        while (length > 0 && !in.atEnd()) {
            const auto tag = in.take<quint32>();
            const auto elementLength = in.take<qint32>();
            length -= qint64(elementLength) + frameHeader;
            if (self.type.facts.version && tag == self.type.facts.version->tag)
                takeVersion(self, object, in.takeText());
            else if (const MemberInfo *member = self.type.memberOfTag(tag, expected))
                readMember(target, *member, elementLength);
            else
                in.skip(elementLength);
        }
        if (length != 0)
            throwLengthError(self.object.GetObjectName());
    }

private:
    // A value is cut short either because the stream ended within it, or because the outermost length was too small.
    void requireThere(const Target &target) const
    {
        if (in.hasOverrun())
            throwLengthError((isShort ? target.object : outermost).GetObjectName());
    }

    std::string_view takeBytes(const Target &target)
    {
        const std::string_view bytes = in.takeBytes();
        requireThere(target);
        return bytes;
    }

    template <class Integer> Integer take(const Target &target)
    {
        const auto value = in.take<Integer>();
        requireThere(target);
        return value;
    }

    void readMember(const Target &target, const MemberInfo &member, qint32 length)
    {
        if (member.list)
            readItems(target, member);
        else if (member.holdsObjects())
            readSingleObject(target.record, member, length);
        else
            readScalar(target, member);
    }

    void readSingleObject(Record &record, const MemberInfo &member, qint32 length)
    {
        readObject(member, member.field(record), length);
        markSet(record, member);
    }

    void readObject(const MemberInfo &member, void *field, qint32 length)
    {
        IRGObject &object = member.objectAt(field);
        read({object, member.object->handle(field), *member.type}, object, length);
    }

    void readItems(const Target &target, const MemberInfo &member)
    {
        const auto count = in.take<qint32>();
        // Each item has a length of four bytes at least: a count beyond that is not one.
        if (count > in.left() / 4)
            throwLengthError(target.object.GetObjectName());
        void *list = member.field(target.record);
        member.list->reserve(list, member.list->items(list).count + qMax(count, 0));
        for (qint32 position = 0; position < count; ++position) {
            const auto length = in.take<qint32>();
            FreshItem fresh(target, member);
            if (member.holdsObjects())
                readObject(member, fresh.value(), length);
            else
                readItem(target, member, fresh.value());
            fresh.keep();
        }
    }

    void readItem(const Target &target, const MemberInfo &member, void *item)
    {
        const std::string_view bytes = takeBytes(target);
        if (member.kind == Kind::Text)
            valueAt<QString>(item) = fromUtf8(bytes);
        else if (member.kind == Kind::Enumeration)
            setEnumerationAt(item, member.enumeration->toValue(bytes));
        else // contract: a number is read as the text of a byte array, which is not how it was written
            valueAt<qint32>(item) = fromUtf8(bytes).toInt();
    }

    void readScalar(const Target &target, const MemberInfo &member)
    {
        switch (member.kind) {
        case Kind::Text: return assign(target, member, fromUtf8(takeBytes(target)));
        case Kind::Boolean: return assign(target, member, take<quint8>(target) != 0);
        case Kind::Int32: return assign(target, member, qint32(take<qint64>(target)));
        case Kind::UInt32: return assign(target, member, quint32(take<qint64>(target)));
        case Kind::Int64: return assign(target, member, take<qint64>(target));
        case Kind::UInt64: return assign(target, member, quint64(take<qint64>(target)));
        case Kind::Double: return assign(target, member, fromUtf8(takeBytes(target)).toDouble());
        case Kind::DateTime:
            return assign(target, member,
                          REPORTGENERATOR::Converters::ToDateTime(fromUtf8(takeBytes(target))));
        case Kind::Enumeration:
            return assignEnumeration(target, member, member.enumeration->toValue(takeBytes(target)));
        case Kind::Object: break;
        }
        Q_ASSERT(false);
    }

    ByteCursor &in;
    const IRGObject &outermost;
    const bool isShort;
};

/// Takes up to @p length bytes from the stream. Memory grows with what arrives, not with what was announced.
QByteArray takePayload(QDataStream &in, int length)
{
    constexpr int chunk = 64 * 1024;
    QByteArray payload;
    while (payload.size() < length) {
        const int wanted = qMin(chunk, length - payload.size());
        const int old = payload.size();
        payload.resize(old + wanted);
        const int taken = in.readRawData(payload.data() + old, wanted);
        if (taken < wanted) {
            payload.resize(old + qMax(taken, 0));
            break;
        }
    }
    return payload;
}

} // namespace

void readTagged(const Self &self, IRGObject &object, QDataStream &in, int length)
{
    pushSettings(self, recordOf(self));
    const QByteArray payload = takePayload(in, length);
    ByteCursor cursor({payload.constData(), std::size_t(payload.size())}, ByteOrder(in));
    TaggedReader(cursor, object, payload.size() < length).read(self, object, length);
}

} // namespace KORVE_XML::engine

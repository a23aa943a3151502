#include "tests/support/objectmodel/outline.h"

#include "tests/support/objectmodel/outlinelines.h"

#include <QDataStream>

namespace modeltest
{
namespace
{

struct TaggedWalk {
    QDataStream in;
    OutlineLines lines;

    qint64 position() const { return in.device()->pos(); }

    quint32 word()
    {
        quint32 read = 0;
        in >> read;
        return read;
    }

    void object(const QString &path, const ClassSchema &type, quint32 length)
    {
        const qint64 end = position() + length;
        while (position() < end && in.status() == QDataStream::Ok) {
            const quint32 tag = word();
            const quint32 elementLength = word();
            frame(path, type, tag, elementLength);
        }
    }

    void frame(const QString &path, const ClassSchema &type, quint32 tag, quint32 length)
    {
        const qint64 end = position() + length;
        if (hasVersion(type) && tag == versionTag)
            version(path);
        else if (const Member *member = type.findTag(tag))
            element(path + '.' + member->name, type, *member, length);
        else
            lines.flaw(path, QStringLiteral("unknown tag 0x%1").arg(tag, 8, 16, QChar('0')));
        if (position() != end) {
            lines.flaw(path,
                       QStringLiteral("0x%1 ends %2 bytes off").arg(tag, 8, 16, QChar('0')).arg(position() - end));
            in.device()->seek(end);
        }
    }

    void version(const QString &path)
    {
        QString text;
        in >> text;
        lines.value(path + ".Version", text);
    }

    void element(const QString &path, const ClassSchema &type, const Member &member, quint32 length)
    {
        if (!member.list)
            return single(path, type, member, length);
        const quint32 count = word();
        for (quint32 index = 0; index < count && in.status() == QDataStream::Ok; ++index) {
            const quint32 itemLength = word();
            single(itemPath(path, static_cast<int>(index)), type, member, itemLength);
        }
    }

    void single(const QString &path, const ClassSchema &type, const Member &member, quint32 length)
    {
        if (member.isObject())
            object(path, schemaOf(member.typeName), length);
        else
            lines.value(path, scalar(type, member, length));
    }

    QString scalar(const ClassSchema &type, const Member &member, quint32 length)
    {
        switch (member.kind) {
        case Kind::Bool: {
            quint8 flag = 0;
            in >> flag;
            return flag == 0 ? "false" : flag == 1 ? "true" : "no flag";
        }
        case Kind::Int32:
        case Kind::UInt32:
        case Kind::Int64:
        case Kind::UInt64:
            // The list of numbers has items of 4 bytes, every other number has 8.
            return number(member.list ? 4 : 8, length);
        default:
            return text(type, member);
        }
    }

    QString number(quint32 width, quint32 length)
    {
        if (length != width)
            return QStringLiteral("number of %1 bytes").arg(length);
        qint64 value = 0;
        if (width == 4)
            value = static_cast<qint32>(word());
        else
            in >> value;
        return QString::number(value);
    }

    QString text(const ClassSchema &type, const Member &member)
    {
        QByteArray utf8;
        in >> utf8;
        const QString read = QString::fromUtf8(utf8);
        if (member.kind == Kind::Enumeration && !literalsOf(type.name, member.typeName).contains(read))
            return "no literal: " + read;
        return read;
    }
};

} // namespace

std::string taggedOutline(const QString &className, const QByteArray &payload)
{
    TaggedWalk walk{QDataStream(payload), {}};
    walk.in.setVersion(QDataStream::Qt_5_12);
    walk.object(className, schemaOf(className), static_cast<quint32>(payload.size()));
    if (walk.in.status() != QDataStream::Ok || !walk.in.atEnd())
        walk.lines.flaw(className, "does not end with its last frame");
    return walk.lines.text();
}

} // namespace modeltest

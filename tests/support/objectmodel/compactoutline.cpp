#include "tests/support/objectmodel/outline.h"

#include "tests/support/objectmodel/outlinelines.h"

#include "objectbase/converters.h"

#include <QDataStream>
#include <QDateTime>

namespace modeltest
{
namespace
{

struct CompactWalk {
    QDataStream in;
    OutlineLines lines;

    template <class T> T take()
    {
        T value{};
        in >> value;
        return value;
    }

    void object(const QString &path, const ClassSchema &type)
    {
        QByteArray presence(static_cast<int>(type.members.size() + 7) / 8, '\0');
        in.readRawData(presence.data(), presence.size());
        if (hasVersion(type))
            lines.value(path + ".Version", take<QString>());
        int bit = 0;
        for (const Member &member : type.accessorOrder()) {
            const bool present = presence[bit / 8] >> (bit % 8) & 1;
            ++bit;
            if (present || member.mandatory)
                field(path + '.' + member.name, type, member);
        }
    }

    void field(const QString &path, const ClassSchema &type, const Member &member)
    {
        if (!member.list)
            return single(path, type, member);
        const quint32 count = take<quint32>();
        for (quint32 index = 0; index < count && in.status() == QDataStream::Ok; ++index)
            single(itemPath(path, static_cast<int>(index)), type, member);
    }

    void single(const QString &path, const ClassSchema &type, const Member &member)
    {
        if (member.isObject())
            object(path, schemaOf(member.typeName));
        else
            lines.value(path, scalar(type, member));
    }

    QString scalar(const ClassSchema &type, const Member &member)
    {
        switch (member.kind) {
        case Kind::Text:
            return take<QString>();
        case Kind::Bool:
            return take<bool>() ? "true" : "false";
        case Kind::Enumeration:
            return literalsOf(type.name, member.typeName).value(take<qint8>(), "no literal");
        case Kind::Double:
            return QString::number(take<double>(), 'f', 2);
        case Kind::DateTime:
            return REPORTGENERATOR::Converters::ToString(take<QDateTime>());
        default:
            return QString::number(take<qint64>());
        }
    }
};

} // namespace

std::string compactOutline(const QString &className, const QByteArray &bytes)
{
    CompactWalk walk{QDataStream(bytes), {}};
    walk.in.setVersion(QDataStream::Qt_5_12);
    walk.object(className, schemaOf(className));
    if (walk.in.status() != QDataStream::Ok || !walk.in.atEnd())
        walk.lines.flaw(className, "does not end with its last field");
    return walk.lines.text();
}

} // namespace modeltest

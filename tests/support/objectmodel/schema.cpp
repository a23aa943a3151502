#include "tests/support/objectmodel/schema.h"

#include <QFile>
#include <QHash>

#include <algorithm>

namespace modeltest
{
namespace
{

// The lines of a data file without comments and blank lines.
QStringList dataLines(const QString &name)
{
    QFile file(QStringLiteral(OBJECTMODEL_TABLES "/") + name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QStringList lines;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n'))
        if (!line.trimmed().isEmpty() && !line.startsWith('#'))
            lines << line;
    return lines;
}

const QHash<QString, Kind> &kinds()
{
    static const QHash<QString, Kind> table{
        {"text", Kind::Text},        {"int32", Kind::Int32},   {"uint32", Kind::UInt32}, {"int64", Kind::Int64},
        {"uint64", Kind::UInt64},    {"double", Kind::Double}, {"bool", Kind::Bool},     {"datetime", Kind::DateTime},
        {"enum", Kind::Enumeration}, {"object", Kind::Object}};
    return table;
}

void readType(const QString &text, Member &member)
{
    QStringList parts = text.split(':');
    member.list = parts.first() == "list";
    if (member.list)
        parts.removeFirst();
    if (!kinds().contains(parts.first()))
        qFatal("unknown type %s", qPrintable(text));
    member.kind = kinds().value(parts.first());
    member.typeName = parts.value(1);
}

Member readMember(const QString &line)
{
    const QStringList columns = line.simplified().split(' ');
    if (columns.size() != 9)
        qFatal("not nine columns: %s", qPrintable(line));
    Member member;
    member.name = columns[0];
    member.xmlName = columns[1];
    member.attribute = columns[2] == "attribute";
    readType(columns[3], member);
    member.mandatory = columns[4] == "1";
    member.alternative = columns[4] == "choice";
    member.countsAsData = columns[5] == "H";
    member.defaultText = columns[6];
    member.limits = columns[7];
    member.tag = columns[8].toUInt(nullptr, 16);
    return member;
}

std::vector<ClassSchema> readSchema()
{
    std::vector<ClassSchema> classes;
    for (const QString &line : dataLines("members.txt")) {
        if (line.startsWith(' '))
            classes.back().members.push_back(readMember(line));
        else
            classes.push_back({line.section(' ', 0, 0), line.section(' ', 1).toLongLong(nullptr, 16), {}});
    }
    return classes;
}

std::vector<Enumeration> readEnumerations()
{
    std::vector<Enumeration> all;
    size_t begin = 0;
    for (const QString &line : dataLines("enumerations.txt")) {
        if (!line.startsWith(' ')) {
            begin = all.size();
            for (const QString &className : line.section(": ", 1).split(' '))
                all.push_back({className, line.section(':', 0, 0), {}});
            continue;
        }
        const QString literal = line.trimmed().section(' ', 1);
        std::for_each(all.begin() + begin, all.end(), [&](Enumeration &each) { each.literals << literal; });
    }
    return all;
}

} // namespace

std::vector<Member> ClassSchema::accessorOrder() const
{
    std::vector<Member> order = members;
    const auto firstElement = std::find_if(order.begin(), order.end(), [](const Member &m) { return !m.attribute; });
    std::rotate(order.begin(), firstElement, order.end());
    return order;
}

const Member *ClassSchema::find(const QString &memberName) const
{
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member &member) { return member.name == memberName; });
    return found == members.end() ? nullptr : &*found;
}

const Member *ClassSchema::findTag(quint32 tag) const
{
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member &member) { return member.tag == tag; });
    return found == members.end() ? nullptr : &*found;
}

bool ClassSchema::hasRequirements() const
{
    return std::any_of(members.begin(), members.end(), [](const Member &member) { return member.countsAsData; });
}

const std::vector<ClassSchema> &schema()
{
    static const std::vector<ClassSchema> all = readSchema();
    return all;
}

const ClassSchema &schemaOf(const QString &className)
{
    for (const ClassSchema &each : schema())
        if (each.name == className)
            return each;
    qFatal("no class %s in the table", qPrintable(className));
}

const std::vector<Enumeration> &enumerations()
{
    static const std::vector<Enumeration> all = readEnumerations();
    return all;
}

QStringList literalsOf(const QString &className, const QString &enumeration)
{
    for (const Enumeration &each : enumerations())
        if (each.className == className && each.name == enumeration)
            return each.literals;
    qFatal("no enumeration %s::%s in the table", qPrintable(className), qPrintable(enumeration));
}

} // namespace modeltest

#include "tests/support/objectmodel/outline.h"

#include "tests/support/objectmodel/outlinelines.h"

#include <QHash>
#include <QXmlStreamReader>

#include <algorithm>

namespace modeltest
{
namespace
{

struct XmlWalk {
    QXmlStreamReader in;
    OutlineLines lines;

    void object(const QString &path, const ClassSchema &type)
    {
        attributes(path, type);
        QHash<QString, int> seen;
        while (in.readNextStartElement()) {
            const Member *member = memberOfElement(type, in.name().toString());
            if (!member) {
                lines.flaw(path, "unknown element " + in.name().toString());
                in.skipCurrentElement();
                continue;
            }
            const QString memberPath = path + '.' + member->name;
            element(member->list ? itemPath(memberPath, seen[member->name]++) : memberPath, *member);
        }
    }

    void attributes(const QString &path, const ClassSchema &type)
    {
        for (const QXmlStreamAttribute &attribute : in.attributes()) {
            const QString name = attribute.name().toString();
            const Member *member = type.find(name);
            if ((member && member->attribute) || (hasVersion(type) && name == "Version"))
                lines.value(path + '.' + name, attribute.value().toString());
            else
                lines.flaw(path, "unknown attribute " + name);
        }
    }

    // An object's element is named after its class, every other one after the member.
    static const Member *memberOfElement(const ClassSchema &type, const QString &name)
    {
        const auto found = std::find_if(type.members.begin(), type.members.end(), [&](const Member &member) {
            return !member.attribute && name == (member.isObject() ? member.typeName : member.xmlName);
        });
        return found == type.members.end() ? nullptr : &*found;
    }

    void element(const QString &path, const Member &member)
    {
        if (member.isObject())
            object(path, schemaOf(member.typeName));
        else
            lines.value(path, in.readElementText());
    }
};

} // namespace

std::string xmlOutline(const QString &className, const QString &document)
{
    XmlWalk walk{QXmlStreamReader(document), {}};
    if (!walk.in.readNextStartElement() || walk.in.name() != className)
        return "no root element " + className.toStdString();
    walk.object(className, schemaOf(className));
    if (walk.in.hasError())
        walk.lines.flaw(className, walk.in.errorString());
    return walk.lines.text();
}

} // namespace modeltest

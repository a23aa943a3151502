#include "tests/support/objectmodel/outline.h"

#include "tests/support/objectmodel/outlinelines.h"
#include "tests/support/objectmodel/samples.h"

namespace modeltest
{
namespace
{

struct Expectation {
    Order order;
    OutlineLines lines;

    void object(const QString &path, const ClassSchema &type, int seed)
    {
        if (hasVersion(type))
            lines.value(path + ".Version", "1.0");
        bool chosen = false;
        for (const Member &member : order == Order::Table ? type.members : type.accessorOrder()) {
            if (member.alternative && chosen)
                continue;
            chosen = chosen || member.alternative;
            occurrences(path + '.' + member.name, member, {type.name, member.name, seed});
        }
    }

    void occurrences(const QString &path, const Member &member, const Place &place)
    {
        if (!member.list)
            return single(path, member, place);
        for (int index = 0; index < sampleListSize; ++index)
            single(itemPath(path, index), member, place.item(index));
    }

    void single(const QString &path, const Member &member, const Place &place)
    {
        if (member.isObject())
            object(path, schemaOf(member.typeName), place.seed);
        else
            lines.value(path, sampleAsText(place, member));
    }
};

} // namespace

std::string expectedOutline(const QString &className, Order order)
{
    Expectation expectation{order, {}};
    expectation.object(className, schemaOf(className), 0);
    return expectation.lines.text();
}

} // namespace modeltest

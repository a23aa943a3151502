#pragma once

#include "tests/support/objectmodel/objectclass.h"

#include <gtest/gtest.h>

#include <memory>

namespace modeltest
{

/// A test that runs over all 52 classes; a row is a class of the table.
class EveryClass : public testing::TestWithParam<ClassSchema>
{
protected:
    using Object = REPORTGENERATOR::IRGObject;

    const ClassSchema &table = GetParam();
    const ObjectClass &type = objectClass(table.name);
    const std::string name = table.name.toStdString();

    /// The table's line of @p member, and whether a filled object has it.
    const Member &lineOf(const MemberAccess &member) const { return *table.find(member.name); }
    bool isFilled(const MemberAccess &member) const
    {
        for (const MemberAccess &each : type.members)
            if (each.alternative)
                return !member.alternative || each.name == member.name;
        return true;
    }

    std::unique_ptr<Object> filledWithout(const MemberAccess &member) const
    {
        std::unique_ptr<Object> object = type.filled();
        member.reset(*object);
        return object;
    }

    QByteArray compact(const Object &object) const
    {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_5_12);
        type.writeCompact(object, out);
        return bytes;
    }

    void readCompact(Object &object, const QByteArray &bytes) const
    {
        QDataStream in(bytes);
        in.setVersion(QDataStream::Qt_5_12);
        type.readCompact(object, in);
    }
};

inline std::string className(const testing::TestParamInfo<ClassSchema> &row)
{
    return row.param.name.toStdString();
}

inline void PrintTo(const ClassSchema &row, std::ostream *out)
{
    *out << row.name.toStdString();
}

} // namespace modeltest

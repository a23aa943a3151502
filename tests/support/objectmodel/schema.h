#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace modeltest
{

enum class Kind { Text, Int32, UInt32, Int64, UInt64, Double, Bool, DateTime, Enumeration, Object };

/// One line of the table of members.
struct Member {
    QString name;
    QString xmlName;
    bool attribute = false;
    Kind kind = Kind::Text; ///< of the member, or of a list's items
    QString typeName;       ///< of an enumeration or object
    bool list = false;
    bool mandatory = false;
    bool alternative = false;
    bool countsAsData = false;
    QString defaultText; ///< "-" where it is the plain default of the kind
    QString limits;      ///< "-" where every value is valid
    quint32 tag = 0;

    bool isObject() const { return kind == Kind::Object; }
    bool isScalar() const { return !list && !isObject(); }
};

/// One class of the table, its members in the order of the XML and tagged forms.
struct ClassSchema {
    QString name;
    qint64 id = 0;
    std::vector<Member> members;

    /// The order of the compact form and its presence bits: attributes that lead the table stand last.
    std::vector<Member> accessorOrder() const;
    const Member *find(const QString &memberName) const;
    const Member *findTag(quint32 tag) const;
    /// True when HasData asks for anything at all.
    bool hasRequirements() const;
};

struct Enumeration {
    QString className;
    QString name;
    QStringList literals;
};

/// All classes of tests/data/objectmodel/members.txt. A file that cannot be read ends the program with a message.
const std::vector<ClassSchema> &schema();
const ClassSchema &schemaOf(const QString &className);

/// All enumerations of tests/data/objectmodel/enumerations.txt, one entry per class that has it.
const std::vector<Enumeration> &enumerations();
QStringList literalsOf(const QString &className, const QString &enumeration);

} // namespace modeltest

#pragma once

#include "objectmodel/engine/enumeration.h"
#include "objectmodel/engine/record.h"

#include <QString>

#include <array>
#include <memory>
#include <vector>

namespace REPORTGENERATOR
{
class IRGObject;
}

namespace KORVE_XML::engine
{

using REPORTGENERATOR::IRGObject;

/// What a member, or an item of a list member, holds.
enum class Kind { Text, Boolean, Int32, UInt32, Int64, UInt64, Double, DateTime, Enumeration, Object };

enum Trait {
    Mandatory = 0x01,
    CountsAsData = 0x02,     ///< HasData asks for it
    Attribute = 0x04,        ///< stands on the start element
    RefusesEmptyText = 0x08, ///< a boolean that must not be read from an empty text
    MustHaveData = 0x10,     ///< an object or list item that must be complete when written as XML
    Alternative = 0x20       ///< one of a choice group
};

enum class Limit { None, Range, Minimum };

/// The items of a list, which lie behind each other.
struct Items {
    const char *first;
    int count;
    int stride;

    const void *at(int position) const { return first + qptrdiff(position) * stride; }
};

/// What the engine does with a list without knowing the type of its items.
struct ListAccess {
    Items (*items)(const void *list);
    Items (*detachedItems)(void *list); ///< the same after the list was detached from its copies
    void *(*append)(void *list);        ///< appends a default item and returns it
    void (*dropLast)(void *list);
    void (*reserve)(void *list, int size);
    void (*clear)(void *list);
    bool (*equal)(const void *a, const void *b);
};

struct TypeInfo;

/// What the engine does with a nested object without knowing its class.
struct ObjectAccess {
    const TypeInfo &(*type)();
    IRGObject &(*object)(void *field);
    RecordPtr &(*handle)(void *field);
    void (*reset)(void *field); ///< puts a fresh object in its place
    bool (*equal)(const void *a, const void *b);
};

/// One member: what the schema says of it, and what the type adds when it is built.
struct MemberInfo {
    QString name;
    Kind kind;
    int traits;
    quint32 tag;
    void *(*fieldOf)(Record &record);
    qint64 defaultValue = 0;
    Limit limit = Limit::None;
    qint64 lowest = 0;
    qint64 highest = 0;
    const Enumeration *enumeration = nullptr;
    const ObjectAccess *object = nullptr;
    const ListAccess *list = nullptr; ///< null for a single value
    int alternative = -1;             ///< its number within the choice group

    int bit = 0;                    ///< its place among the accessors
    qptrdiff offset = 0;            ///< where the field lies in the record
    const TypeInfo *type = nullptr; ///< of the object or the list's objects

    bool is(Trait trait) const { return traits & trait; }
    bool holdsObjects() const { return kind == Kind::Object; }
    void *field(Record &record) const { return reinterpret_cast<char *>(&record) + offset; }
    const void *field(const Record &record) const { return reinterpret_cast<const char *>(&record) + offset; }
    IRGObject &objectAt(void *item) const { return object->object(item); }
    const IRGObject &objectAt(const void *item) const { return object->object(const_cast<void *>(item)); }
};

/// The version attribute that one class carries besides its members.
struct VersionInfo {
    QString current;
    quint32 tag;
    QString &(*loaded)(Record &record); ///< the version found in the last document read
};

/// One class as the schema gives it, built when first needed.
struct TypeInfo {
    struct Facts {
        QString name;
        Record *(*create)();
        RecordPtr &(*handle)(const IRGObject &object);
        std::vector<MemberInfo> members; ///< in the order of the accessors
        QString choiceName = {};         ///< empty without a choice group
        const Enumeration *choice = nullptr;
        const VersionInfo *version = nullptr;
        bool refusesUnknownElements = false;
    };
    explicit TypeInfo(Facts facts);
    TypeInfo(const TypeInfo &) = delete;
    TypeInfo &operator=(const TypeInfo &) = delete;

    const MemberInfo *memberOfElement(QStringView name) const;
    /// Looks at the place @p expected of `written` first, and leaves it behind what it found: writers keep that order.
    const MemberInfo *memberOfTag(quint32 tag, std::size_t &expected) const;

    Facts facts;
    std::unique_ptr<const Record> blank;          ///< a record that holds defaults alone
    std::vector<const MemberInfo *> written;      ///< in the order of XML and tagged form: attributes first
    std::vector<const MemberInfo *> nested;       ///< those that hold objects
    std::vector<const MemberInfo *> alternatives; ///< those of the choice group
    std::vector<const MemberInfo *> validated;    ///< single values that can be invalid
    std::vector<const MemberInfo *> dataTexts;    ///< texts that count as data, which they do by not being null
    Bits mandatory;                               ///< single values that must be set
    Bits alwaysWritten;                           ///< the compact form has these, set or not
    Bits data;                                    ///< what counts as data by its bit; alternatives stand aside
    bool countsChoice = false;                    ///< the selected alternative counts as data
    bool mayDifferFromItself = false;             ///< holds a double somewhere, which may be NaN

private:
    void add(MemberInfo &member);

    std::array<qint8, 64> firstByName; ///< position of the first member with that hash, or -1
    std::vector<qint8> nextByName;     ///< the next member with the same hash, or -1
};

/// The type of the class T; each generated class specialises it.
template <class T> const TypeInfo &typeOf();

} // namespace KORVE_XML::engine

#include "objectmodel/engine/settings.h"

#include "objectmodel/engine/object.h"

namespace KORVE_XML::engine
{

namespace
{

using LoggerPtr = std::shared_ptr<REPORTGENERATOR::Logger>;

struct ValidateSetting {
    bool validate;
    bool agrees(const IRGObject &object) const { return object.GetValidate() == validate; }
    void apply(const IRGObject &object) const { object.SetValidate(validate); }
};

struct LoggerSetting {
    const LoggerPtr &logger;
    bool agrees(const IRGObject &object) const { return object.GetLogger() == logger; }
    void apply(const IRGObject &object) const { object.SetLogger(logger); }
};

struct BothSettings {
    ValidateSetting validate;
    LoggerSetting logger;
    bool agrees(const IRGObject &object) const { return validate.agrees(object) && logger.agrees(object); }
    void apply(const IRGObject &object) const
    {
        validate.apply(object);
        logger.apply(object);
    }
};

template <class Setting> bool agrees(const Setting &setting, const MemberInfo &member, const Record &record);

template <class Setting> bool agrees(const Setting &setting, const IRGObject &object, const TypeInfo &type)
{
    if (!setting.agrees(object))
        return false;
    for (const MemberInfo *member : type.nested) {
        if (!agrees(setting, *member, viewOf(object, type)))
            return false;
    }
    return true;
}

template <class Setting> bool agrees(const Setting &setting, const MemberInfo &member, const Record &record)
{
    const void *field = member.field(record);
    const TypeInfo &type = *member.type;
    if (!member.list)
        return agrees(setting, member.objectAt(field), type);
    const Items items = member.list->items(field);
    for (int position = 0; position < items.count; ++position) {
        if (!agrees(setting, member.objectAt(items.at(position)), type))
            return false;
    }
    return true;
}

// Settings are looked at first: applying them detaches what is shared with copies, and the copies keep their own.
template <class Setting> void push(const Setting &setting, const TypeInfo &type, Record &record)
{
    for (const MemberInfo *member : type.nested) {
        if (agrees(setting, *member, record))
            continue;
        void *field = member->field(record);
        const Items items = member->list ? member->list->detachedItems(field) : Items{static_cast<char *>(field), 1, 0};
        for (int position = 0; position < items.count; ++position)
            setting.apply(member->objectAt(items.at(position)));
    }
}

template <class Setting> void pushToRecord(const Setting &setting, const Self &self)
{
    if (self.d)
        push(setting, self.type, recordOf(self));
}

} // namespace

void pushValidate(const Self &self, bool validate)
{
    pushToRecord(ValidateSetting{validate}, self);
}

void pushLogger(const Self &self, const LoggerPtr &logger)
{
    pushToRecord(LoggerSetting{logger}, self);
}

void pushSettings(const Self &self, Record &record)
{
    push(BothSettings{{self.object.GetValidate()}, {self.object.GetLogger()}}, self.type, record);
}

void copySettings(const IRGObject &from, IRGObject &to)
{
    BothSettings{{from.GetValidate()}, {from.GetLogger()}}.apply(to);
}

} // namespace KORVE_XML::engine

#include "valuetreelib/valuefactory.h"

#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <algorithm>

namespace values
{
namespace
{
template <typename... Classes> void registerAll(ValueFactory &factory)
{
    (factory.RegisterType(std::make_unique<DefaultValueCreator<Classes>>()), ...);
}
} // namespace

ValueFactory::ValueFactory()
{
    registerAll<Value<QString>, Value<bool>, Value<int>, Value<unsigned int>, Value<qint64>, Value<double>,
                ValueNumeric<int>, ValueNumeric<qint64>, ValueNumeric<double>, ValueSelection>(*this);
}

ValueFactory &ValueFactory::Instance()
{
    static ValueFactory factory;
    return factory;
}

void ValueFactory::RegisterType(std::unique_ptr<ValueCreator> creator)
{
    if (!creator)
        return;
    const ValueType type = creator->type();
    const QString typeName = creator->typeName();
    entries[type] = {typeName, std::move(creator)};
}

void ValueFactory::UnregisterType(ValueType type)
{
    entries.erase(type);
}

std::unique_ptr<ValueBase> ValueFactory::create(ValueType type) const
{
    const auto found = entries.find(type);
    return found == entries.end() ? nullptr : found->second.creator->create();
}

std::unique_ptr<ValueBase> ValueFactory::create(const QString &typeName) const
{
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&typeName](const auto &entry) { return entry.second.typeName == typeName; });
    return found == entries.end() ? nullptr : found->second.creator->create();
}

std::unique_ptr<ValueBase> ValueFactory::create(ValueType type, const QString &name) const
{
    std::unique_ptr<ValueBase> value = create(type);
    if (value)
        value->SetName(name, nullptr);
    return value;
}
} // namespace values

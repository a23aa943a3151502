#include "orbconnection/mirrorvalue.h"

#include "valuetreelib/valuefactory.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorvalue";

/// By the number; by the name, where a program has registered the class under another number.
std::unique_ptr<values::ValueBase> make(const Record &record)
{
    const values::ValueFactory &factory = values::ValueFactory::Instance();
    std::unique_ptr<values::ValueBase> value = factory.create(values::ValueType{record.type});
    return value ? std::move(value) : factory.create(textOf(record.typeName));
}
} // namespace

std::unique_ptr<values::ValueBase> makeValue(const Record &record, const QString &path, IObserver *originator)
{
    std::unique_ptr<values::ValueBase> value = make(record);
    if (!value) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 is of a class that is not known here: %2 (%3)")
                .arg(path, textOf(record.typeName), QString::number(record.type));
        });
        return nullptr;
    }
    value->SetName(path, originator); // for traces
    return value->SetCommandString(record.frames, originator) ? std::move(value) : nullptr;
}

bool isOfClass(const values::ValueBase &value, const Record &record)
{
    return value.GetType() == record.type || value.GetTypeName() == textOf(record.typeName);
}
} // namespace mirror

#include "orbconnection/mirrorvalue.h"

#include "coresupport/trace.h"
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

bool addValue(values::Tree &tree, const QString &absolutePath, const Record &record, IObserver *originator)
{
    std::unique_ptr<values::ValueBase> value = make(record);
    if (!value) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 is of a class that is not known here: %2 (%3)")
                .arg(absolutePath, textOf(record.typeName), QString::number(record.type));
        });
        return true;
    }
    value->SetName(absolutePath, originator); // for traces
    if (!value->SetCommandString(record.frames, originator))
        return false;
    tree.addValueAt(absolutePath, std::move(value), originator); // traces a path that cannot be
    return true;
}
} // namespace mirror

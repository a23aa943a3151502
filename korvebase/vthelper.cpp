#include "korvebase/vthelper.h"

#include "appruntime/runinmainthreadevent.h"
#include "appruntime/threadswitchingadministration.h"
#include "appruntime/threadswitchinghandler.h"
#include "coresupport/trace.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuedescriptor.h"
#include "valuetreelib/valueselection.h"

#include <limits>

namespace
{

constexpr char sourceName[] = "korvebase/vthelper";

/// Runs @p change; whatever it throws is traced as @p failure and goes no further.
template <class Change> void guarded(const char *failure, Change change)
{
    try {
        change();
    } catch (...) { // contract: an observer of the value may throw anything
        traceAt(TraceLevel::Normal, sourceName, [&] { return QString::fromLatin1(failure); });
    }
}

} // namespace

VTHelper::VTHelper() = default;

VTHelper::~VTHelper() = default;

VTHelper &VTHelper::Instance()
{
    static VTHelper helper;
    return helper;
}

void VTHelper::SafeSetValue(values::ValueSelection *value, long key, IObserver *observer)
{
    using namespace ThreadingHelper;
    ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QString::fromLatin1(sourceName))
        ->executeAndWait(RunInMainThreadEvent3(this, &VTHelper::SetValueInternal, value, key, observer));
}

void VTHelper::SafeSetValueDescriptor(const values::ValueDescriptor *descriptor, const QString &nodePath,
                                      IObserver *observer)
{
    using namespace ThreadingHelper;
    ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QString::fromLatin1(sourceName))
        ->executeAndWait(
            RunInMainThreadEvent3(this, &VTHelper::SetValueDescriptorInternal, descriptor, nodePath, observer));
}

void VTHelper::SetMinMax(values::ValuePtr<values::ValueNumeric<double>> &value, IObserver *observer)
{
    constexpr double bound = 9223372036854775808.0; // two to the power of 63
    value->SetMinMax(-bound, bound, 1.0, observer);
}

void VTHelper::SetMinMax(values::ValuePtr<values::ValueNumeric<qint64>> &value, IObserver *observer)
{
    using Limits = std::numeric_limits<qint64>;
    value->SetMinMax(Limits::min(), Limits::max(), 1, observer);
}

void VTHelper::SetValueInternal(values::ValueSelection *value, long key, IObserver *observer)
{
    if (!value)
        return;
    guarded("Undefined EXCEPTION in VTHelper: ~SafeSetValueInternal", // contract: worded so
            [&] { value->selectKey(key, observer); });
}

void VTHelper::SetValueDescriptorInternal(const values::ValueDescriptor *descriptor, QString nodePath,
                                          IObserver *observer)
{
    guarded("Undefined EXCEPTION in SetValueDescriptorInternal", [&] {
        if (values::Node *node = values::Tree::Instance().findNode(nodePath))
            node->SetValueDescriptor(descriptor, observer);
    });
}

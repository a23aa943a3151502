#pragma once

#include "korvebase/korvebase_export.h"

#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueptr.h"

#include <QString>

class IObserver;

namespace values
{
class ValueDescriptor;
class ValueSelection;
}

/// Changes values of the tree on behalf of callers on any thread.
class KORVEBASE_EXPORT VTHelper
{
public:
    virtual ~VTHelper();
    /// Thread: any, also for the first use.
    static VTHelper &Instance();

    /// Selects @p key on the main thread and returns when that is done. A null value is left alone.
    void SafeSetValue(values::ValueSelection *value, long key, IObserver *observer);
    /// Gives the node at @p nodePath, if there is one, a descriptor on the main thread; returns when that is done.
    void SafeSetValueDescriptor(const values::ValueDescriptor *descriptor, const QString &nodePath,
                                IObserver *observer);

    /// The widest limits, with a step of one. Thread: main.
    void SetMinMax(values::ValuePtr<values::ValueNumeric<double>> &value, IObserver *observer);
    void SetMinMax(values::ValuePtr<values::ValueNumeric<qint64>> &value, IObserver *observer);

private:
    VTHelper();
    void SetValueInternal(values::ValueSelection *value, long key, IObserver *observer);
    void SetValueDescriptorInternal(const values::ValueDescriptor *descriptor, QString nodePath, IObserver *observer);
};

#pragma once

#include "coresupport/iobserver.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueobservingptr.h"

#include <QObject>
#include <QString>

#include <map>

namespace korvectl
{

/// Watches in the mirrored tree whether devices come and go, and how many records they have.
///
/// Thread: main.
class DeviceChanges : public QObject, public IObserver
{
    Q_OBJECT
public:
    /// Also watches those devices in the node at @p devicesPath that are new there.
    void watch(const QString &devicesPath);

    void Update(Observable *subject, TChangeCode code) override;

Q_SIGNALS:
    void si_changed();

private:
    struct Device {
        explicit Device(IObserver *observer) : available(observer), recordCount(observer) {}

        values::ValueObservingPtr<values::Value<bool>> available;
        values::ValueObservingPtr<values::ValueNumeric<int>> recordCount;
    };

    std::map<QString, Device> devices; // by path
};

} // namespace korvectl

#pragma once

#include "korvebase/korvebase_export.h"

#include "valuetreelib/value.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueptr.h"
#include "valuetreelib/valueselection.h"

#include <QObject>

namespace KorveCommon
{

/// The values of the tree that belong to the application itself rather than to one channel: its connection to the
/// central object service, the settings of a replay and of a replay over the fast link.
///
/// Values that are there keep what they hold; those that init() creates are seeded. Thread: main.
class KORVEBASE_EXPORT LocalKorveValues : public QObject
{
    Q_OBJECT
public:
    using BoolValue = values::Value<bool>;
    using IntValue = values::Value<int>;
    using DoubleValue = values::Value<double>;
    using TextValue = values::Value<QString>;
    using NumericValue = values::ValueNumeric<double>;
    template <class T> using Holder = values::ValuePtr<T>;

    explicit LocalKorveValues(QObject *parent);
    ~LocalKorveValues() override;

    /// Takes hold of all values below @p basePath + "/KORVE/Local"; one trailing "/" of the path is cut.
    void init(const QString &basePath);

    bool valuesExist() const;
    QString basePath() const { return base; }
    QString localPath() const { return local; }

    const Holder<BoolValue> &valueSupports10G() const { return supports10G; }
    const Holder<BoolValue> &valueSupportsXgReplay() const { return supportsXgReplay; }
    const Holder<values::ValueSelection> &value10GMode() const { return mode10G; }
    const Holder<BoolValue> &valueRepeatSetting() const { return repeatSetting; }
    const Holder<BoolValue> &valuePauseSetting() const { return pauseSetting; }
    const Holder<TextValue> &valueXgPreferredKorveIP() const { return xgPreferredKorveIP; }
    const Holder<TextValue> &valueXgKorveMAC() const { return xgKorveMAC; }
    const Holder<TextValue> &valueXgConnectedRecorderXML() const { return xgConnectedRecorderXML; }
    const Holder<DoubleValue> &valueXgLastRequest() const { return xgLastRequest; }
    const Holder<TextValue> &valueRecordControlFlag() const { return recordControlFlag; }
    const Holder<IntValue> &valueRequestTimer() const { return requestTimer; }
    const Holder<TextValue> &valueCCOConnectionResult() const { return ccoConnectionResult; }
    const Holder<values::ValueSelection> &valueCCOConnectionState() const { return ccoConnectionState; }
    const Holder<TextValue> &valueDeviceId() const { return deviceId; }
    const Holder<TextValue> &valueAvailableDevices() const { return availableDevices; }
    /// contract: a copy, which holds the value once more while it lives
    const Holder<NumericValue> valueWaterfallTimestamp() const { return waterfallTimestamp; }

private:
    template <class Self> static auto holdersOf(Self &self);
    void resetValues();
    void seed10GMode();
    void seedConnectionState();
    void seedTimestamp();

    QString base;
    QString local;
    bool isInitialised = false;
    Holder<BoolValue> supports10G;
    Holder<BoolValue> supportsXgReplay;
    Holder<values::ValueSelection> mode10G;
    Holder<BoolValue> repeatSetting;
    Holder<BoolValue> pauseSetting;
    Holder<TextValue> xgPreferredKorveIP;
    Holder<TextValue> xgKorveMAC;
    Holder<TextValue> xgConnectedRecorderXML;
    Holder<DoubleValue> xgLastRequest;
    Holder<TextValue> recordControlFlag;
    Holder<IntValue> requestTimer;
    Holder<TextValue> ccoConnectionResult;
    Holder<values::ValueSelection> ccoConnectionState;
    Holder<TextValue> deviceId;
    Holder<TextValue> availableDevices;
    Holder<NumericValue> waterfallTimestamp;
};

} // namespace KorveCommon

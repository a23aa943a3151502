#include "korvebase/localkorvevalues.h"

#include "korvebase/valuetreepaths.h"

#include <tuple>

namespace KorveCommon
{

namespace
{

constexpr double greatestTimestamp = 18446744073709551616.0; // two to the power of 64

} // namespace

template <class Self> auto LocalKorveValues::holdersOf(Self &self)
{
    return std::tie(self.supports10G, self.supportsXgReplay, self.mode10G, self.repeatSetting, self.pauseSetting,
                    self.xgPreferredKorveIP, self.xgKorveMAC, self.xgConnectedRecorderXML, self.xgLastRequest,
                    self.recordControlFlag, self.requestTimer, self.ccoConnectionResult, self.ccoConnectionState,
                    self.deviceId, self.availableDevices, self.waterfallTimestamp);
}

LocalKorveValues::LocalKorveValues(QObject *parent) : QObject(parent) {}

LocalKorveValues::~LocalKorveValues() = default;

void LocalKorveValues::init(const QString &basePath)
{
    resetValues();
    base = basePath;
    local = (basePath.endsWith(QLatin1Char('/')) ? basePath.chopped(1) : basePath) + korve::path::local;
    const auto isCreated = [this](auto &holder, const char *name) {
        return holder.getOrCreate(local + QLatin1String(name));
    };
    isCreated(supports10G, "/SupportsXG");
    if (isCreated(supportsXgReplay, "/SupportsXGReplay"))
        supportsXgReplay->SetValue(false, nullptr);
    if (isCreated(mode10G, "/10GMode"))
        seed10GMode();
    isCreated(repeatSetting, "/ModeRepeats");
    isCreated(pauseSetting, "/ModeReplayPaused");
    isCreated(xgPreferredKorveIP, "/XgPreferredKorveIps");
    isCreated(xgKorveMAC, "/XgKorveMAC");
    isCreated(xgConnectedRecorderXML, "/XgSystemRecoderXml"); // contract: spelled so in the tree
    isCreated(xgLastRequest, "/XgLastRequest");
    isCreated(recordControlFlag, "/RecordControlFlag");
    if (isCreated(requestTimer, "/RequestTimer"))
        requestTimer->SetValue(0, nullptr);
    isCreated(ccoConnectionResult, "/CCOConnectionResult");
    if (isCreated(ccoConnectionState, "/CCOConnectionState"))
        seedConnectionState();
    isCreated(deviceId, "/DeviceId");
    isCreated(availableDevices, "/AvailableDevices");
    if (isCreated(waterfallTimestamp, "/WaterfallTimestamp"))
        seedTimestamp();
    isInitialised = true;
}

bool LocalKorveValues::valuesExist() const
{
    return isInitialised && std::apply([](const auto &...holder) { return (holder.Get() && ...); }, holdersOf(*this));
}

void LocalKorveValues::resetValues()
{
    std::apply([](auto &...holder) { (holder.Reset(), ...); }, holdersOf(*this));
    isInitialised = false;
}

void LocalKorveValues::seed10GMode()
{
    mode10G->addItem(QStringLiteral("OFF"), 0.0, 0, nullptr);
    mode10G->addItem(QStringLiteral("ON"), 1.0, 1, nullptr);
    mode10G->selectKey(0, nullptr);
    mode10G->SetState(values::ValueStateSeeded, nullptr);
}

void LocalKorveValues::seedConnectionState()
{
    static const QStringList texts{QStringLiteral("connecting"), QStringLiteral("connected"),
                                   QStringLiteral("disconnected")};
    ccoConnectionState->setTexts(texts, nullptr);
    ccoConnectionState->SelectIndex(2, nullptr);
}

void LocalKorveValues::seedTimestamp()
{
    waterfallTimestamp->SetMin(0.0, nullptr);
    waterfallTimestamp->SetMax(greatestTimestamp, nullptr);
    waterfallTimestamp->SetStep(1.0, nullptr);
}

} // namespace KorveCommon

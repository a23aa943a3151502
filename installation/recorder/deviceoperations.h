#pragma once

#include "installation/recorder/deviceclock.h"
#include "installation/recorder/recordcopier.h"
#include "installation/recorder/spectrumsender.h"

namespace installation::recorder
{

/// What a device does beside keeping its records: each part says for itself what.
///
/// Thread: any.
class DeviceOperations
{
public:
    /// The folder @p statePath is that of the store.
    DeviceOperations(const std::shared_ptr<StoreThread> &store, const QString &statePath)
        : clock(statePath + QLatin1String("/clock")), copier(store, clock), spectra(store)
    {
    }

    /// Ends all that goes on, and waits until it has.
    void stop()
    {
        copier.stop();
        spectra.stop();
    }

    DeviceClock clock;
    RecordCopier copier;
    SpectrumSender spectra;
};

} // namespace installation::recorder

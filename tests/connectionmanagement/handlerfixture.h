#pragma once

#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "objectmodel/korve_recorddata.h"
#include "tests/connectionmanagement/liveinstallation.h"
#include "tests/connectionmanagement/owntraces.h"
#include "tests/connectionmanagement/station.h"

/// A station of subsystem "Alpha" whose tics are down, and a registered manager.
class HandlerFixture : public LiveInstallation
{
protected:
    using Handler = KorveGUI::KorveGuiToServerCorbaHandler;

    HandlerFixture()
    {
        registerManager();
        station->Initialize(alpha);
        manager.calls.clear();
    }

    void upAll() const
    {
        for (KorveCommon::KorveManagerConnectionData *tic : station->tics(alpha))
            comeUp(tic);
    }
    void downAll() const
    {
        for (KorveCommon::KorveManagerConnectionData *tic : station->tics(alpha))
            goDown(tic);
    }

    const QString alpha = QStringLiteral("Alpha");
    const QString west = QStringLiteral("West");
    const std::shared_ptr<Station> station = std::make_shared<Station>(address());
};

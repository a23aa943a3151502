#include "benchmarks/remote/station.h"

Station &Station::instance()
{
    // Never destroyed: the ORB may end first.
    static Station &station = *new Station;
    return station;
}

Station::Station()
    : data((Service::instance(), std::make_shared<KorveCommon::HMIServerConnectionData>(QString()))),
      handler(std::make_shared<KorveGUI::KorveGuiToServerCorbaHandler>(QString(), data, QString()))
{
    waitFor([this] { return handler->IsConnected(); }, "the handler finds the manager");
    manager = handler->GetKorveInterface();
}

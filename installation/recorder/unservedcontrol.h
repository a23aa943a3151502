#pragma once

#include "installation/contracts/bookmarks.hh"

namespace installation::recorder
{

/// The operations of a device that this recorder does not offer: what an archive gives back, self-test, and control
/// of the host.
///
/// All raise `ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE` with a text, or `CORBA::NO_IMPLEMENT` where the contract
/// declares nothing, and trace it. None has an effect.
class UnservedControl : public POA_KORVE_INSTALLATION::IF_BookmarkControl
{
public:
    using Receiver = TQ_KORVE_IT::IF_Korve_IT_ptr;
    using Text = const char *;
    using Rate = TQ_KORVE::eDATARATE_CLASS;
    using Format = TQ_KORVE::eDATA_FORMAT;
    using Window = TQ_KORVE::eFFT_WINDOWING_MODES;
    using Rates = TQ_KORVE::seqDataRateClasses;
    using OccupiedRates = TQ_KORVE::seqOccupiedDataRateClasses;

    void copyRecordFromArchDev(Text, Text) override;
    void copyRecordFromArchDevEx(Text, Text, Receiver) override;
    void removeRecordOnArchDev(Text, Text) override;
    void eraseAllRecords() override;
    CORBA::Boolean setPasswdForArchievingUser(Text, Text) override; // contract: spelled so on the wire
    void shutdown() override;
    void reboot() override;
    void terminate() override;
    void restart() override;
    void startBiteOnDemand() override;
    void startBiteOnDemandEx(Receiver) override;
    void cancelBiteOnDemand() override;
    CORBA::ULong getPDWcount(Text) override;
    void getPDWs(Text, CORBA::ULong, CORBA::UShort) override;
    CORBA::ULong getInternalStatusData(CORBA::ULong, TQ_KORVE::seqOctet &) override;
};

} // namespace installation::recorder

#include "idl/cco.hh"
#include "idl/lumbalandatacom.hh"

#include <gtest/gtest.h>

namespace
{

/// A data link that implements the common base once for both of its sides.
class DataLink : public POA_LLDCmodule::LLDC_Interface
{
public:
    void endConnection(CORBA::ULong) override {}
    LLDCmodule::seqIfDescription *getIfUsed() override { return new LLDCmodule::seqIfDescription; }
    LLDCmodule::seqIfDescription *getIfAvailable() override { return new LLDCmodule::seqIfDescription; }
    LLDCmodule::struConnectionParams waitForConnectionOnIf(const LLDCmodule::struConnectionParams &wanted,
                                                           CORBA::ULong) override
    {
        return wanted;
    }
    void startDataTransfer(CORBA::ULong) override {}
    void stopDataTransfer(CORBA::ULong) override {}
    CORBA::ULong connectToIf(const LLDCmodule::struConnectionParams &, CORBA::ULong) override { return 1; }
};

TEST(DataLinkServant, IsATransmitterAndAReceiverOverOneBase)
{
    DataLink link;
    for (const char *id :
         {LLDCmodule::LLDC_Interface_Base::_PD_repoId, LLDCmodule::LLDC_Interface_Transmitter::_PD_repoId,
          LLDCmodule::LLDC_Interface_Receiver::_PD_repoId, LLDCmodule::LLDC_Interface::_PD_repoId})
        EXPECT_TRUE(link._is_a(id)) << id;
    EXPECT_FALSE(link._is_a(CCO::Callback::_PD_repoId));
}

TEST(NilReference, OfTheCentralServiceRaisesASystemException)
{
    const CCO::IF_CCO_c_var none = CCO::IF_CCO_c::_nil();
    EXPECT_THROW(CORBA::Object_var(none->Resolve("KorveManager/VTConnect", CCO::rtInstallation)), CORBA::INV_OBJREF);
}

} // namespace

#include "tests/idl/generatedstubs.h"

#include "idl/cco.hh"
#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <gmock/gmock.h>

namespace
{

using testing::ContainerEq;
using testing::SizeIs;

std::set<std::string> listedRepositoryIds()
{
    std::set<std::string> ids;
    for (const auto &[id, names] : contractlists::read("repositoryids.txt"))
        ids.insert(id);
    return ids;
}

TEST(Contracts, HaveExactlyTheListedRepositoryIds)
{
    ASSERT_THAT(listedRepositoryIds(), SizeIs(34));
    EXPECT_THAT(generatedstubs::repositoryIds(), ContainerEq(listedRepositoryIds()));
}

// The library must really export them: a reader of the sources alone would not notice hidden symbols.
TEST(Contracts, ExportTheRepositoryIdsFromTheLibrary)
{
    const std::set<std::string> exported{
        TQ_KRV::IF_KRV_c_KRV::_PD_repoId,
        TQ_KRV::IF_KRV_c_ChanMan::_PD_repoId,
        TQ_KRV::IF_KRV_c_Chan::_PD_repoId,
        TQ_KRV::IF_KORVE_Admin::_PD_repoId,
        TQ_KRV::IF_KORVE_Replay::_PD_repoId,
        TQ_KRV::IF_KorveStatusCallback::_PD_repoId,
        TQ_KRV::IF_ExportCallback::_PD_repoId,
        TQ_KRV::IF_RecordStateChangeCallback::_PD_repoId,
        TQ_KRV::exGen::_PD_repoId,
        TQ_KRV::IF_KRV_c_KRV::exKRV::_PD_repoId,
        TQ_KRV::IF_KRV_c_ChanMan::exChanMan::_PD_repoId,
        TQ_KRV::IF_KRV_c_Chan::exChan::_PD_repoId,
        TQ_KRV::IF_KORVE_Admin::exAdmin::_PD_repoId,
        TQ_KORVE::IF_Control::_PD_repoId,
        TQ_KORVE::IF_RecordingSession::_PD_repoId,
        TQ_KORVE::IF_ReplaySession::_PD_repoId,
        TQ_KORVE::exKorve::_PD_repoId,
        TQ_KORVE_IT::IF_Korve_IT::_PD_repoId,
        LLDCmodule::LLDC_Interface_Base::_PD_repoId,
        LLDCmodule::LLDC_Interface_Transmitter::_PD_repoId,
        LLDCmodule::LLDC_Interface_Receiver::_PD_repoId,
        LLDCmodule::LLDC_Interface::_PD_repoId,
        LLDCmodule::exLLDC::_PD_repoId,
        CCO::IF_CCO_c::_PD_repoId,
        CCO::IF_CCO_c_Naming::_PD_repoId,
        CCO::IF_CCO_c_NamingCorba::_PD_repoId,
        CCO::IF_CCO_c_Update::_PD_repoId,
        CCO::Callback::_PD_repoId,
        CCO::CBRegistration::_PD_repoId,
        CCO::IF_CCO_c::NameNotAvailable::_PD_repoId,
        CCO::IF_CCO_c_Naming::InvalidObject::_PD_repoId,
        CCO::IF_CCO_c_Naming::InvalidType::_PD_repoId,
        CCO::IF_CCO_c_Naming::RedundancyStrategyNotSupported::_PD_repoId,
        CCO::IF_CCO_c_Naming::RedundancyTypeNotSupported::_PD_repoId,
    };
    EXPECT_THAT(exported, ContainerEq(listedRepositoryIds()));
}

TEST(Contracts, HaveExactlyTheListedOperationsInTheirOrder)
{
    const NamesByHeading listed = contractlists::read("operations.txt");
    ASSERT_THAT(listed, SizeIs(22));
    EXPECT_THAT(generatedstubs::operations(), ContainerEq(listed));
}

TEST(Contracts, HaveExactlyTheListedStructuresWithTheirMembersInOrder)
{
    const NamesByHeading listed = contractlists::read("structures.txt");
    ASSERT_THAT(listed, SizeIs(48));
    EXPECT_THAT(generatedstubs::structures(), ContainerEq(listed));
}

TEST(Contracts, ResolveByTheFirstLiteral)
{
    EXPECT_EQ(static_cast<int>(CCO::rtInstallation), 0);
}

TEST(Contracts, NameTheKindsOfEveryExceptionInWireOrder)
{
    const NamesByHeading listed = contractlists::read("kinds.txt");
    ASSERT_THAT(listed, SizeIs(7));
    const NamesByHeading generated = generatedstubs::enumerations();
    for (const auto &[enumeration, kinds] : listed) {
        ASSERT_TRUE(generated.contains(enumeration)) << enumeration;
        EXPECT_THAT(generated.at(enumeration), ContainerEq(kinds)) << enumeration;
    }
}

} // namespace

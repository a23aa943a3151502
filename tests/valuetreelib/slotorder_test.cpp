#include "tests/support/virtualslot.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/icommandlistoptimizer.h"
#include "valuetreelib/ivaluefrequencyitemmap.h"
#include "valuetreelib/mediatorctrl.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace
{
using namespace values;

/// Expects @p places to follow each other from @p first on.
void expectInOrder(std::ptrdiff_t first, std::initializer_list<std::ptrdiff_t> places)
{
    for (const std::ptrdiff_t place : places)
        EXPECT_EQ(place, first++);
}

TEST(VirtualOperations, OfEveryValueStandInTheirPublishedOrder)
{
    using SetFrames = bool (ValueBase::*)(std::string_view, IObserver *);
    using SetCommand = bool (ValueBase::*)(quint8, ByteCursor, IObserver *);
    expectInOrder(
        2, {virtualSlot(&ValueBase::SetStringValue), virtualSlot(&ValueBase::GetStringValue),
            virtualSlot(&ValueBase::GetState), virtualSlot(&ValueBase::SetState),
            virtualSlot(&ValueBase::HasChanged), virtualSlot(&ValueBase::GetCommandStringForTransmission),
            virtualSlot(static_cast<SetFrames>(&ValueBase::SetCommandString)),
            virtualSlot(static_cast<SetCommand>(&ValueBase::SetCommandString)), virtualSlot(&ValueBase::GetType),
            virtualSlot(&ValueBase::GetTypeName), virtualSlot(&ValueBase::Assign), virtualSlot(&ValueBase::Compare),
            virtualSlot(&ValueBase::GetCommandStringForRecording), virtualSlot(&ValueBase::SetUpdateTimerTime),
            virtualSlot(&ValueBase::OverrideTimer), virtualSlot(&ValueBase::KillOverrideTimer)});
}

TEST(VirtualOperations, OfEveryValueContinueWithThoseOfItsCommands)
{
    using Optimize = void (ValueBase::*)(ValueBase::CommandList &) const;
    using OptimizeBy = void (ValueBase::*)(ValueBase::CommandList &, ICommandListOptimizer &) const;
    expectInOrder(virtualSlot(&ValueBase::KillOverrideTimer) + 1,
                  {virtualSlot(&ValueBase::CreateCommandListOptimizer),
                   virtualSlot(static_cast<Optimize>(&ValueBase::OptimizeCommandList)),
                   virtualSlot(static_cast<OptimizeBy>(&ValueBase::OptimizeCommandList)),
                   virtualSlot(&ValueBase::PreWorkCommandList),
                   virtualSlot(&ValueBase::AddObjectStateStringForTransmission),
                   virtualSlot(&ValueBase::AddObjectStateStringForRecording), virtualSlot(&ValueBase::AddCommand),
                   virtualSlot(&ValueBase::AddCommandForTransmission), virtualSlot(&ValueBase::CreateNextCommand)});
}

TEST(VirtualOperations, OfATypedValueFollowThoseOfEveryValue)
{
    using Number = ValueNumeric<double>;
    expectInOrder(slotBehind<ValueSelection>(), // which adds none
                  {virtualSlot(&Value<double>::SetValue), virtualSlot(&Value<double>::GetValue),
                   virtualSlot(&Number::SetMinMax), virtualSlot(&Number::SetMin), virtualSlot(&Number::SetMax),
                   virtualSlot(&Number::SetStep)});
}

TEST(VirtualOperations, OfACommandStandInTheirPublishedOrder)
{
    using Command = ValueBase::CommandOnValue;
    expectInOrder(2, {virtualSlot(&Command::Execute), virtualSlot(&Command::GetCommandId),
                      virtualSlot(&Command::AddCommandString), virtualSlot(&Command::Clone)});
}

TEST(VirtualOperations, OfAMediatorsControllerStandInTheirPublishedOrder)
{
    expectInOrder(2, {virtualSlot(&MediatorCtrl::NotifyCreated), virtualSlot(&MediatorCtrl::NotifyDeleted),
                      virtualSlot(&MediatorCtrl::CreateMediator), slotBehind<MediatorCtrl>()});
}

TEST(VirtualOperations, OfAKeyedMapStandInTheirPublishedOrder)
{
    using Map = valueitemmap::IHasChangeLogValueTemplate<unsigned int>;
    expectInOrder(0, {virtualSlot(&Map::Size), virtualSlot(&Map::GetChangeLog), virtualSlot(&Map::IndexVector),
                      virtualSlot(&Map::Contains), virtualSlot(&Map::GetValueBase)});
}
} // namespace

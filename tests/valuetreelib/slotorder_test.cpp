#include "tests/support/virtualplace.h"
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
        2, {virtualPlace(&ValueBase::SetStringValue), virtualPlace(&ValueBase::GetStringValue),
            virtualPlace(&ValueBase::GetState), virtualPlace(&ValueBase::SetState),
            virtualPlace(&ValueBase::HasChanged), virtualPlace(&ValueBase::GetCommandStringForTransmission),
            virtualPlace(static_cast<SetFrames>(&ValueBase::SetCommandString)),
            virtualPlace(static_cast<SetCommand>(&ValueBase::SetCommandString)), virtualPlace(&ValueBase::GetType),
            virtualPlace(&ValueBase::GetTypeName), virtualPlace(&ValueBase::Assign), virtualPlace(&ValueBase::Compare),
            virtualPlace(&ValueBase::GetCommandStringForRecording), virtualPlace(&ValueBase::SetUpdateTimerTime),
            virtualPlace(&ValueBase::OverrideTimer), virtualPlace(&ValueBase::KillOverrideTimer)});
}

TEST(VirtualOperations, OfEveryValueContinueWithThoseOfItsCommands)
{
    using Optimize = void (ValueBase::*)(ValueBase::CommandList &) const;
    using OptimizeBy = void (ValueBase::*)(ValueBase::CommandList &, ICommandListOptimizer &) const;
    expectInOrder(virtualPlace(&ValueBase::KillOverrideTimer) + 1,
                  {virtualPlace(&ValueBase::CreateCommandListOptimizer),
                   virtualPlace(static_cast<Optimize>(&ValueBase::OptimizeCommandList)),
                   virtualPlace(static_cast<OptimizeBy>(&ValueBase::OptimizeCommandList)),
                   virtualPlace(&ValueBase::PreWorkCommandList),
                   virtualPlace(&ValueBase::AddObjectStateStringForTransmission),
                   virtualPlace(&ValueBase::AddObjectStateStringForRecording), virtualPlace(&ValueBase::AddCommand),
                   virtualPlace(&ValueBase::AddCommandForTransmission), virtualPlace(&ValueBase::CreateNextCommand)});
}

TEST(VirtualOperations, OfATypedValueFollowThoseOfEveryValue)
{
    using Number = ValueNumeric<double>;
    expectInOrder(placeBehind<ValueSelection>(), // which adds none
                  {virtualPlace(&Value<double>::SetValue), virtualPlace(&Value<double>::GetValue),
                   virtualPlace(&Number::SetMinMax), virtualPlace(&Number::SetMin), virtualPlace(&Number::SetMax),
                   virtualPlace(&Number::SetStep)});
}

TEST(VirtualOperations, OfACommandStandInTheirPublishedOrder)
{
    using Command = ValueBase::CommandOnValue;
    expectInOrder(2, {virtualPlace(&Command::Execute), virtualPlace(&Command::GetCommandId),
                      virtualPlace(&Command::AddCommandString), virtualPlace(&Command::Clone)});
}

TEST(VirtualOperations, OfAMediatorsControllerStandInTheirPublishedOrder)
{
    expectInOrder(2, {virtualPlace(&MediatorCtrl::NotifyCreated), virtualPlace(&MediatorCtrl::NotifyDeleted),
                      virtualPlace(&MediatorCtrl::CreateMediator), placeBehind<MediatorCtrl>()});
}

TEST(VirtualOperations, OfAKeyedMapStandInTheirPublishedOrder)
{
    using Map = valueitemmap::IHasChangeLogValueTemplate<unsigned int>;
    expectInOrder(0, {virtualPlace(&Map::Size), virtualPlace(&Map::GetChangeLog), virtualPlace(&Map::IndexVector),
                      virtualPlace(&Map::Contains), virtualPlace(&Map::GetValueBase)});
}
} // namespace

#include "korvebase/localkorvevalues.h"

#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <gtest/gtest.h>

#include <QStringList>

using KorveCommon::LocalKorveValues;
using values::Tree;

namespace {

class LocalValues : public testing::Test
{
protected:
    void TearDown() override { Tree::Instance().removeNode("/"); }

    LocalKorveValues local{nullptr};
};

TEST_F(LocalValues, AreMissingBeforeInit)
{
    EXPECT_FALSE(local.valuesExist());
}

TEST_F(LocalValues, StandBelowTheBasePathWithoutItsLastSlash)
{
    local.init("/x/");
    EXPECT_EQ(local.basePath(), "/x/");
    EXPECT_EQ(local.localPath(), "/x/KORVE/Local");
    local.init("/y//");
    EXPECT_EQ(local.localPath(), "/y//KORVE/Local");
}

TEST_F(LocalValues, BearTheirNamesInTheOrderOfCreation)
{
    local.init("/x");
    EXPECT_TRUE(local.valuesExist());
    QStringList names;
    for (const values::TreeItem *item : Tree::Instance().findNode("/x/KORVE/Local")->GetTreeItems())
        names.append(item->name());
    EXPECT_EQ(names.join(' '),
              "SupportsXG SupportsXGReplay 10GMode ModeRepeats ModeReplayPaused XgPreferredKorveIps XgKorveMAC "
              "XgSystemRecoderXml XgLastRequest RecordControlFlag RequestTimer CCOConnectionResult CCOConnectionState "
              "DeviceId AvailableDevices WaterfallTimestamp");
}

TEST_F(LocalValues, AreSeededWhenTheyAreCreated)
{
    local.init("/x");
    EXPECT_EQ(local.value10GMode()->GetStringValue(), "OFF");
    EXPECT_EQ(local.value10GMode()->GetState(), values::ValueStateSeeded);
    EXPECT_FALSE(local.valueSupportsXgReplay()->GetValue());
    EXPECT_EQ(local.valueRequestTimer()->GetValue(), 0);
    EXPECT_EQ(local.valueCCOConnectionState()->GetStringValue(), "disconnected");
    EXPECT_EQ(local.valueCCOConnectionState()->GetCurrentKey(), 2);
    EXPECT_EQ(local.valueWaterfallTimestamp()->min(), 0.0);
    EXPECT_EQ(local.valueWaterfallTimestamp()->max(), 18446744073709551616.0);
    EXPECT_EQ(local.valueWaterfallTimestamp()->step(), 1.0);
}

TEST_F(LocalValues, ThatAreThereKeepWhatTheyHold)
{
    local.init("/x");
    local.value10GMode()->selectKey(1, nullptr);
    local.value10GMode()->SetState(values::ValueStateValid, nullptr);
    local.valueCCOConnectionState()->SelectIndex(1, nullptr);
    local.valueRequestTimer()->SetValue(7, nullptr);
    local.init("/x");
    EXPECT_EQ(local.value10GMode()->GetStringValue(), "ON");
    EXPECT_EQ(local.value10GMode()->GetState(), values::ValueStateValid);
    EXPECT_EQ(local.valueCCOConnectionState()->GetStringValue(), "connected");
    EXPECT_EQ(local.valueRequestTimer()->GetValue(), 7);
}

TEST_F(LocalValues, DoNotExistAnyMoreWhenOneIsRemoved)
{
    local.init("/x");
    Tree::Instance().removeValue("/x/KORVE/Local/DeviceId");
    EXPECT_FALSE(local.valuesExist());
    EXPECT_EQ(local.valueDeviceId().Get(), nullptr);
}

} // namespace

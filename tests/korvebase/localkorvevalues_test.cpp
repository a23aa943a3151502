#include "korvebase/localkorvevalues.h"

#include "coresupport/iobserver.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <type_traits>

using KorveCommon::LocalKorveValues;
using values::Tree;

namespace
{

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

TEST_F(LocalValues, AreReachedByTheirAccessors)
{
    local.init("/x");
    EXPECT_EQ(local.valueSupports10G()->name(), "SupportsXG");
    EXPECT_EQ(local.valueSupportsXgReplay()->name(), "SupportsXGReplay");
    EXPECT_EQ(local.value10GMode()->name(), "10GMode");
    EXPECT_EQ(local.valueRepeatSetting()->name(), "ModeRepeats");
    EXPECT_EQ(local.valuePauseSetting()->name(), "ModeReplayPaused");
    EXPECT_EQ(local.valueXgPreferredKorveIP()->name(), "XgPreferredKorveIps");
    EXPECT_EQ(local.valueXgKorveMAC()->name(), "XgKorveMAC");
    EXPECT_EQ(local.valueXgConnectedRecorderXML()->name(), "XgSystemRecoderXml");
    EXPECT_EQ(local.valueXgLastRequest()->name(), "XgLastRequest");
    EXPECT_EQ(local.valueRecordControlFlag()->name(), "RecordControlFlag");
    EXPECT_EQ(local.valueRequestTimer()->name(), "RequestTimer");
    EXPECT_EQ(local.valueCCOConnectionResult()->name(), "CCOConnectionResult");
    EXPECT_EQ(local.valueCCOConnectionState()->name(), "CCOConnectionState");
    EXPECT_EQ(local.valueDeviceId()->name(), "DeviceId");
    EXPECT_EQ(local.valueAvailableDevices()->name(), "AvailableDevices");
    EXPECT_EQ(local.valueWaterfallTimestamp()->name(), "WaterfallTimestamp");
}

TEST_F(LocalValues, HaveTheirItems)
{
    local.init("/x");
    using Items = std::vector<values::SelItemDesc>;
    EXPECT_EQ(local.value10GMode()->items(), (Items{{"OFF", 0.0, 0}, {"ON", 1.0, 1}}));
    EXPECT_EQ(local.valueCCOConnectionState()->items(),
              (Items{{"connecting", 0.0, 0}, {"connected", 1.0, 1}, {"disconnected", 2.0, 2}}));
}

TEST_F(LocalValues, LendTheTimestampByACopy)
{
    local.init("/x");
    static_assert(std::is_same_v<decltype(local.valueWaterfallTimestamp()),
                                 const LocalKorveValues::Holder<LocalKorveValues::NumericValue>>);
    const auto copy = local.valueWaterfallTimestamp();
    local.init("/y");
    EXPECT_EQ(copy->GetPathName(), "/x/KORVE/Local/WaterfallTimestamp");
}

TEST_F(LocalValues, AreSeededWhenTheyAreCreated)
{
    local.init("/x");
    EXPECT_EQ(local.value10GMode()->GetStringValue(), "OFF");
    EXPECT_EQ(local.value10GMode()->GetState(), values::ValueStateSeeded);
    EXPECT_EQ(local.valueCCOConnectionState()->GetState(), values::ValueStateValid);
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
    local.valueSupportsXgReplay()->SetValue(true, nullptr);
    local.valueWaterfallTimestamp()->SetMax(5.0, nullptr);
    local.init("/x");
    EXPECT_EQ(local.value10GMode()->GetStringValue(), "ON");
    EXPECT_EQ(local.value10GMode()->GetState(), values::ValueStateValid);
    EXPECT_EQ(local.valueCCOConnectionState()->GetStringValue(), "connected");
    EXPECT_EQ(local.valueRequestTimer()->GetValue(), 7);
    EXPECT_TRUE(local.valueSupportsXgReplay()->GetValue());
    EXPECT_EQ(local.valueWaterfallTimestamp()->max(), 5.0);
}

TEST_F(LocalValues, AreLetGoBeforeOthersAreTaken)
{
    /// Looks when the first of the others is there.
    struct Witness : IObserver {
        explicit Witness(const LocalKorveValues &local) : local(local) {}
        void Update(Observable *, TChangeCode) override
        {
            if (looks++ == 0)
                holdsOthers = local.valuesExist() || local.valueWaterfallTimestamp().Get();
        }
        const LocalKorveValues &local;
        bool holdsOthers = false;
        int looks = 0;
    };
    Witness witness(local);
    local.init("/x");
    values::Node *const home = Tree::Instance().addNode("/y/KORVE/Local");
    home->AddObserver(&witness);
    local.init("/y");
    home->DeleteObserver(&witness);
    EXPECT_GT(witness.looks, 0);
    EXPECT_FALSE(witness.holdsOthers);
    EXPECT_TRUE(local.valuesExist());
}

class EachLocalValue : public LocalValues, public testing::WithParamInterface<const char *>
{
};

TEST_P(EachLocalValue, IsNeededForTheValuesToExist)
{
    local.init("/x");
    ASSERT_TRUE(local.valuesExist());
    ASSERT_TRUE(Tree::Instance().removeValue(QStringLiteral("/x/KORVE/Local/") + GetParam()));
    EXPECT_FALSE(local.valuesExist());
}

INSTANTIATE_TEST_SUITE_P(Names, EachLocalValue,
                         testing::Values("SupportsXG", "SupportsXGReplay", "10GMode", "ModeRepeats",
                                         "ModeReplayPaused", "XgPreferredKorveIps", "XgKorveMAC",
                                         "XgSystemRecoderXml", "XgLastRequest", "RecordControlFlag", "RequestTimer",
                                         "CCOConnectionResult", "CCOConnectionState", "DeviceId", "AvailableDevices",
                                         "WaterfallTimestamp"),
                         [](const auto &row) { return std::string("Named") + row.param; });

} // namespace

#include "korvebase/vthelper.h"

#include "tests/appruntime/capturedtraces.h"

#include "korvebase/archivedescriptors.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valueselection.h"

#include <gmock/gmock.h>

#include <QEventLoop>

#include <limits>
#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using values::Tree;

namespace
{

/// Throws from each notification.
class Troublemaker : public IObserver
{
public:
    void Update(Observable *, TChangeCode) override { throw std::runtime_error("trouble"); }
};

class Helper : public testing::Test
{
protected:
    void SetUp() override
    {
        selection.getOrCreate("/a/Mode");
        selection->setTexts({"zero", "one"}, nullptr);
    }
    void TearDown() override { Tree::Instance().removeNode("/"); }

    /// Runs @p call on another thread while the main thread serves events.
    template <class Call> void fromAnotherThread(Call call)
    {
        QEventLoop loop;
        std::thread thread([&] {
            call();
            QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection); // made and taken within Qt
        });
        loop.exec();
        thread.join();
    }

    values::ValuePtr<values::ValueSelection> selection;
    VTHelper &helper = VTHelper::Instance();
};

TEST_F(Helper, SelectsAtOnceOnTheMainThread)
{
    helper.SafeSetValue(selection.Get(), 1, nullptr);
    EXPECT_EQ(selection->GetCurrentKey(), 1);
}

TEST_F(Helper, HasSelectedWhenAnotherThreadGoesOn)
{
    long seen = -1;
    fromAnotherThread([&] {
        helper.SafeSetValue(selection.Get(), 1, nullptr);
        seen = selection->GetCurrentKey();
    });
    EXPECT_EQ(seen, 1);
}

TEST_F(Helper, LeavesANullValueAlone)
{
    CapturedTraces traces;
    helper.SafeSetValue(nullptr, 1, nullptr);
    EXPECT_TRUE(traces.texts().empty());
}

TEST_F(Helper, TracesWhatAnObserverThrows)
{
    Troublemaker troublemaker;
    selection->AddObserver(&troublemaker);
    CapturedTraces traces(32);
    EXPECT_NO_THROW(helper.SafeSetValue(selection.Get(), 1, nullptr));
    EXPECT_THAT(traces.texts(), ElementsAre("Undefined EXCEPTION in VTHelper: ~SafeSetValueInternal"));
    selection->DeleteObserver(&troublemaker);
}

TEST_F(Helper, GivesANodeItsDescriptor)
{
    const values::ValueDescriptor *descriptor = &korve::archiveDescriptors().front();
    helper.SafeSetValueDescriptor(descriptor, "/a", nullptr);
    EXPECT_EQ(Tree::Instance().findNode("/a")->valueDescriptor(), descriptor);
    EXPECT_NO_THROW(helper.SafeSetValueDescriptor(descriptor, "/missing", nullptr));
    EXPECT_EQ(Tree::Instance().findNode("/missing"), nullptr);
}

TEST_F(Helper, TracesWhatAnObserverOfTheNodeThrows)
{
    Troublemaker troublemaker;
    Tree::Instance().findNode("/a")->AddObserver(&troublemaker);
    CapturedTraces traces(32);
    EXPECT_NO_THROW(helper.SafeSetValueDescriptor(&korve::archiveDescriptors().front(), "/a", nullptr));
    EXPECT_THAT(traces.texts(), ElementsAre("Undefined EXCEPTION in SetValueDescriptorInternal"));
    Tree::Instance().findNode("/a")->DeleteObserver(&troublemaker);
}

TEST_F(Helper, SetsTheWidestLimits)
{
    values::ValuePtr<values::ValueNumeric<double>> real;
    real.getOrCreate("/a/Real");
    helper.SetMinMax(real, nullptr);
    EXPECT_EQ(real->min(), -9223372036854775808.0);
    EXPECT_EQ(real->max(), 9223372036854775808.0);
    EXPECT_EQ(real->step(), 1.0);

    values::ValuePtr<values::ValueNumeric<qint64>> whole;
    whole.getOrCreate("/a/Whole");
    helper.SetMinMax(whole, nullptr);
    EXPECT_EQ(whole->min(), std::numeric_limits<qint64>::min());
    EXPECT_EQ(whole->max(), std::numeric_limits<qint64>::max());
    EXPECT_EQ(whole->step(), 1);
}

TEST(ArchiveDescriptors, AreNineOfOneGroup)
{
    QStringList lines;
    for (const values::ValueDescriptor &descriptor : korve::archiveDescriptors())
        lines.append(QStringLiteral("%1 %2 %3 '%4'")
                         .arg(descriptor.group(), descriptor.name(),
                              QString::number(descriptor.selectionItems().size()), descriptor.defaultText()));
    EXPECT_EQ(lines.join('\n'), QStringLiteral("/Archive ArchiveCommand 3 '%1'\n"
                                               "/Archive ArchvieCmdResult 5 '%2'\n"
                                               "/Archive ArchiveAction 4 'CopyToArchive'\n"
                                               "/Archive IdList 0 ''\n"
                                               "/Archive ArchiveURL 0 ''\n"
                                               "/Archive AllRecordsHaveChanged 0 ''\n"
                                               "/Archive OneRecordHasChanged 0 ''\n"
                                               "/Archive CurrentItem 0 ''\n"
                                               "/Archive ProcessedItem 0 ''")
                                    .arg(values::g_svdCommand[2].String(), values::g_svdResult[0].String()));
}

TEST(ArchiveDescriptors, HaveAPrototypeOfTheirClass)
{
    const QString selection = values::ValueSelection().GetTypeName();
    const QString text = values::Value<QString>().GetTypeName();
    const QString flag = values::Value<bool>().GetTypeName();
    QStringList classes;
    for (const values::ValueDescriptor &descriptor : korve::archiveDescriptors())
        classes.append(descriptor.prototype()->GetTypeName());
    EXPECT_EQ(classes, (QStringList{selection, selection, selection, text, text, flag, text, text, text}));
}

TEST(ArchiveActions, HaveTheirNumbersAsKeys)
{
    const auto &items = korve::archiveDescriptors()[2].selectionItems();
    const char *texts[] = {"AddArchive", "CopyToArchive", "CopyFromArchive", "DeleteFromArchive"};
    ASSERT_EQ(items.size(), 4U);
    for (int key = 0; key < 4; ++key)
        EXPECT_EQ(items[std::size_t(key)], values::SelItemDesc(texts[key], key, key));
}

} // namespace

#include "tests/valuetreelib/treetestsupport.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

struct PathCase {
    const char *name;
    const char *path;
};

class PathForm : public TreeTest, public testing::WithParamInterface<PathCase>
{
};

TEST_P(PathForm, FindsValueAndNode)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/KORVE/Device/"), QStringLiteral("D1"));
    Node *const node = tree.addNode(QStringLiteral("/KORVE/Device/D1"));
    EXPECT_EQ(tree.findValue(QString::fromLatin1(GetParam().path)), value);
    EXPECT_EQ(tree.findNode(QString::fromLatin1(GetParam().path)), node);
}

TEST_P(PathForm, AddsAtTheNormalPath)
{
    tree.addNode(QString::fromLatin1(GetParam().path));
    EXPECT_NE(tree.findNode(QStringLiteral("/KORVE/Device/D1")), nullptr);
    EXPECT_EQ(tree.subtree(QStringLiteral("/")).size(), 4u);
}

INSTANTIATE_TEST_SUITE_P(Paths, PathForm,
                         testing::Values(PathCase{"Normal", "/KORVE/Device/D1"},
                                         PathCase{"EmptyParts", "//KORVE///Device//D1"},
                                         PathCase{"NoLeadingSlash", "KORVE/Device/D1"},
                                         PathCase{"TrailingSlash", "/KORVE/Device/D1/"},
                                         PathCase{"AllOfThem", "KORVE//Device/D1//"}),
                         [](const auto &info) { return info.param.name; });

class TreeItems : public TreeTest
{
};

TEST_F(TreeItems, AreNotCreatedByLookingThemUp)
{
    EXPECT_EQ(tree.findValue(QStringLiteral("/a/b")), nullptr);
    EXPECT_EQ(tree.findNode(QStringLiteral("/a")), nullptr);
    EXPECT_EQ(tree.findValue(QStringLiteral("a//b")), nullptr);
    EXPECT_EQ(tree.subtree(QStringLiteral("/")).size(), 1u);
    EXPECT_THAT(tree.subtree(QStringLiteral("/a")), IsEmpty());
}

TEST_F(TreeItems, StandUnderTheRoot)
{
    for (const char *path : {"", "/", "//"})
        EXPECT_EQ(tree.findNode(QLatin1String(path))->GetPathName(), QStringLiteral("/"));
    EXPECT_EQ(tree.findNode(QStringLiteral("/"))->name(), QString());
    EXPECT_EQ(tree.findNode(QStringLiteral("/"))->parent(), nullptr);
}

TEST_F(TreeItems, HaveNamePathAndParent)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("c"));
    EXPECT_EQ(value->name(), QStringLiteral("c"));
    EXPECT_EQ(value->GetPathName(), QStringLiteral("/a/b/c"));
    EXPECT_EQ(value->parent(), tree.findNode(QStringLiteral("/a/b")));
    EXPECT_EQ(value->tree(), &tree);
    EXPECT_FALSE(value->isNode());
    EXPECT_TRUE(value->parent()->isNode());
}

TEST_F(TreeItems, MayBearTheirOwnLeadingSlash)
{
    add<TextValue>(QStringLiteral("/x/KORVE/Local"), QStringLiteral("/10GMode"));
    EXPECT_NE(tree.findValue(QStringLiteral("/x/KORVE/Local/10GMode")), nullptr);
}

TEST_F(TreeItems, AreFoundRelativeToAnItem)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/D1/Admin/"), QStringLiteral("IsVirtual"));
    Node *const device = tree.findNode(QStringLiteral("/D1"));
    EXPECT_EQ(device->findValue(QStringLiteral("Admin/IsVirtual")), value);
    EXPECT_EQ(device->findValue(QStringLiteral("Admin//IsVirtual")), value);
    EXPECT_EQ(device->findValue(QStringLiteral("/D1/Admin/IsVirtual")), value) << "absolute";
    EXPECT_EQ(device->findValue(QStringLiteral("/Admin/IsVirtual")), nullptr) << "absolute";
    EXPECT_EQ(device->findNode(QStringLiteral("Admin")), value->parent());
    EXPECT_EQ(tree.findNode(QStringLiteral("/"))->findNode(QStringLiteral("D1")), device);
}

TEST_F(TreeItems, FindThemselvesByTheEmptyPath)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/D1"), QStringLiteral("v"));
    TreeItem *const item = value->parent();
    EXPECT_EQ(item->findNode(QString()), value->parent());
    EXPECT_EQ(item->findValue(QString()), nullptr);
    EXPECT_EQ(value->findValue(QString()), value);
    EXPECT_EQ(value->findNode(QString()), nullptr);
    EXPECT_EQ(value->findValue(QStringLiteral("x")), nullptr);
    EXPECT_EQ(value->findNode(QStringLiteral("/D1")), value->parent()) << "absolute";
    EXPECT_EQ(TextValue().findNode(QStringLiteral("/D1")), nullptr) << "in no tree";
}

TEST_F(TreeItems, ComeInTheOrderInWhichTheyWereAdded)
{
    for (const char *name : {"z", "a", "m"})
        add<TextValue>(QStringLiteral("/n"), QLatin1String(name));
    tree.addNode(QStringLiteral("/n/a"));
    std::vector<QString> names;
    for (TreeItem *item : tree.findNode(QStringLiteral("/n"))->GetTreeItems())
        names.push_back(item->name());
    EXPECT_THAT(names, ElementsAre(QStringLiteral("z"), QStringLiteral("a"), QStringLiteral("m"), QStringLiteral("a")));
}

TEST_F(TreeItems, AreListedNodesFirst)
{
    add<TextValue>(QStringLiteral("/n/a"), QStringLiteral("v"));
    add<TextValue>(QStringLiteral("/n"), QStringLiteral("w"));
    add<TextValue>(QStringLiteral("/other"), QStringLiteral("x"));
    std::vector<QString> paths;
    for (TreeItem *item : tree.subtree(QStringLiteral("n")))
        paths.push_back(item->GetPathName());
    EXPECT_THAT(paths, ElementsAre(QStringLiteral("/n"), QStringLiteral("/n/a"), QStringLiteral("/n/a/v"),
                                   QStringLiteral("/n/w")));
}

TEST_F(TreeItems, AreKeptApartInTwoTrees)
{
    Tree other;
    add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"));
    EXPECT_EQ(other.findNode(QStringLiteral("/a")), nullptr);
    EXPECT_EQ(other.addNode(QStringLiteral("/b"))->tree(), &other);
    EXPECT_EQ(tree.findNode(QStringLiteral("/b")), nullptr);
}

TEST_F(TreeItems, CanBeManyAndGoAgain)
{
    const int count = 3000;
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(add<Value<int>>(QStringLiteral("/n%1").arg(i % 7), QString::number(i)));
    for (int i = 0; i < count; i += 3)
        ASSERT_TRUE(tree.removeValue(QStringLiteral("/n%1/%2").arg(i % 7).arg(i)));
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(tree.findValue(QStringLiteral("/n%1/%2").arg(i % 7).arg(i)) != nullptr, i % 3 != 0) << i;
}

class Adding : public TreeTest
{
};

TEST_F(Adding, RefusesASecondValueOfThatPath)
{
    TextValue *const first = add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"));
    bool deleted = false;
    struct Mortal : Value<bool> {
        explicit Mortal(bool &deleted) : deleted(deleted) {}
        ~Mortal() override { deleted = true; }
        bool &deleted;
    };
    auto second = std::make_unique<Mortal>(deleted);
    second->SetName(QStringLiteral("v"), nullptr);
    EXPECT_FALSE(tree.addValue(QStringLiteral("a/"), std::move(second)));
    EXPECT_TRUE(deleted);
    EXPECT_EQ(tree.findValue(QStringLiteral("/a/v")), first);
    EXPECT_THAT(traces, ElementsAre(QStringLiteral("cannot add \"/a/v\": there is such a value")));
}

TEST_F(Adding, NeedsAValueWithAName)
{
    EXPECT_FALSE(tree.addValue(QStringLiteral("/a"), nullptr));
    EXPECT_FALSE(tree.addValue(QStringLiteral("/a"), std::make_unique<TextValue>()));
    EXPECT_EQ(tree.findNode(QStringLiteral("/a")), nullptr);
    EXPECT_EQ(traces.size(), 2u);
}

TEST_F(Adding, AtAWholePathNamesTheValueByIt)
{
    auto value = std::make_unique<TextValue>();
    value->SetName(QStringLiteral("other"), nullptr);
    ASSERT_TRUE(tree.addValueAt(QStringLiteral("/a//b/v"), std::move(value)));
    const ValueBase *const added = tree.findValue(QStringLiteral("/a/b/v"));
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->name(), QStringLiteral("v"));
    EXPECT_FALSE(tree.addValueAt(QStringLiteral("/a/b/"), std::make_unique<TextValue>()));
    EXPECT_EQ(traces.size(), 1u);
}

TEST_F(Adding, RefusesPathsWithoutEnd)
{
    const QString deep = QStringLiteral("/a").repeated(256);
    EXPECT_EQ(tree.addNode(deep + QStringLiteral("/b")), nullptr);
    EXPECT_EQ(add<TextValue>(deep, QStringLiteral("v")), nullptr);
    EXPECT_EQ(tree.findNode(QStringLiteral("/a")), nullptr);
    EXPECT_NE(tree.addNode(deep), nullptr);
    EXPECT_NE(add<TextValue>(QStringLiteral("/b").repeated(255), QStringLiteral("v")), nullptr);
}

TEST_F(Adding, KeepsTheNameOfWhatIsInTheTree)
{
    TextValue *const value = add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"));
    value->SetName(QStringLiteral("w"), nullptr);
    EXPECT_EQ(value->GetPathName(), QStringLiteral("/a/v"));
    EXPECT_THAT(traces, ElementsAre(QStringLiteral("/a/v: in the tree, keeps its name")));
}

TEST_F(Adding, TellsTheNodeThatGrewOfTheChildAndThenOfItsItems)
{
    LoggingObserver observer("a", log);
    Node *const node = tree.addNode(QStringLiteral("/a"));
    node->AddObserver(&observer);
    observer.react = [this] { EXPECT_NE(tree.findValue(QStringLiteral("/a/b/v")), nullptr) << "all is there"; };
    add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("v"));
    EXPECT_THAT(taken(), ElementsAre("a 15", "a 16"));
    EXPECT_EQ(observer.subject, node);
    add<TextValue>(QStringLiteral("/a/b/"), QStringLiteral("w"));
    EXPECT_THAT(taken(), IsEmpty()) << "/a/b grew, not /a";
    add<TextValue>(QStringLiteral("/a/"), QStringLiteral("x"));
    EXPECT_THAT(taken(), ElementsAre("a 15", "a 16"));
    tree.addNode(QStringLiteral("/a/b"));
    EXPECT_THAT(taken(), IsEmpty()) << "it was there";
}

TEST_F(Adding, SkipsTheOriginator)
{
    LoggingObserver originator("o", log);
    LoggingObserver other("other", log);
    Node *const node = tree.addNode(QStringLiteral("/a"));
    node->AddObserver(&originator);
    node->AddObserver(&other);
    add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"), &originator);
    EXPECT_THAT(taken(), ElementsAre("other 15", "other 16"));
}

TEST_F(Adding, SurvivesAnObserverThatRemovesTheNode)
{
    LoggingObserver observer("a", log);
    tree.addNode(QStringLiteral("/a"))->AddObserver(&observer);
    observer.react = [this] { tree.removeNode(QStringLiteral("/a")); };
    EXPECT_EQ(tree.addNode(QStringLiteral("/a/b")), nullptr);
    EXPECT_THAT(taken(), ElementsAre("a 15", "a 18"));
}

TEST_F(Adding, TellsAllWhenAnObserverThrows)
{
    Node *const node = tree.addNode(QStringLiteral("/n"));
    LoggingObserver first("first", log);
    LoggingObserver second("second", log);
    node->AddObserver(&first);
    node->AddObserver(&second);
    first.react = [] { throw std::string("trouble"); };
    EXPECT_THROW(add<TextValue>(QStringLiteral("/n"), QStringLiteral("v")), std::string);
    EXPECT_THAT(taken(), ElementsAre("first 15", "second 15", "first 16", "second 16"));
    EXPECT_TRUE(tree.findValue(QStringLiteral("/n/v")));
}

TEST_F(Adding, CanBeAskedForBeforehand)
{
    const QString deepest = QStringLiteral("/xy").repeated(Tree::maxDepth);
    const QString longest = u'/' + QString(Tree::maxPathLength - 1, u'x');
    EXPECT_TRUE(Tree::canHold(deepest));
    EXPECT_FALSE(Tree::canHold(deepest + QStringLiteral("/x")));
    EXPECT_TRUE(Tree::canHold(longest));
    EXPECT_FALSE(Tree::canHold(longest + u'x'));
    EXPECT_TRUE(tree.addNode(deepest));
    EXPECT_TRUE(tree.addNode(longest));
    EXPECT_FALSE(tree.addNode(longest + u'x'));
}

TEST_F(Adding, SurvivesAnObserverThatAddsMore)
{
    LoggingObserver observer("a", log);
    tree.addNode(QStringLiteral("/a"))->AddObserver(&observer);
    observer.react = [this] { add<TextValue>(QStringLiteral("/a"), QStringLiteral("second")); };
    add<TextValue>(QStringLiteral("/a"), QStringLiteral("first"));
    EXPECT_THAT(taken(), ElementsAre("a 15", "a 15", "a 16", "a 16"));
    EXPECT_EQ(tree.findNode(QStringLiteral("/a"))->GetTreeItems().size(), 2u);
}

TEST_F(TreeItems, AcceptTheCallThatAnnouncesAStart)
{
    add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"));
    tree.configure(nullptr);
    EXPECT_EQ(tree.subtree(QStringLiteral("/")).size(), 3u);
}

#ifndef QT_NO_DEBUG
TEST_F(TreeItems, BelongToTheMainThread)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(std::thread([] { Tree::Instance().findValue(QStringLiteral("/a")); }).join(), "isMainThread");
    EXPECT_DEATH(std::thread([] { Value<int>().SetValue(1, nullptr); }).join(), "isMainThread");
}
#endif
} // namespace

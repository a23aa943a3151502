#include "apps/korvectl/treewatch.h"
#include "tests/orbconnection/livetreeserver.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace korvectl;
using Kind = TreeEvent::Kind;

namespace
{

constexpr std::chrono::seconds limit{20};

/// A watch of a tree server that does what it is told.
class WatchedTree : public LiveTreeServer
{
protected:
    void watch(const char *path)
    {
        part = std::make_unique<MirroredPart>(address(), QString::fromUtf8(path), MirroredPart::Look::AtNode, limit);
        watcher = std::make_unique<TreeWatch>(*part, [this](const TreeEvent &event) { events.push_back(event); });
        ASSERT_TRUE(comesTrue([this] { return told(Kind::Value) == 1; }));
    }
    void setAtServer(const char *line) { server().tell(QByteArray("set ") + line); }
    long told(Kind kind) const
    {
        return std::count_if(events.begin(), events.end(),
                             [kind](const TreeEvent &event) { return event.kind == kind; });
    }
    /// "PATH CONTENT STATE" of each row of a kind.
    std::vector<std::string> rows(Kind kind) const
    {
        std::vector<std::string> texts;
        for (const TreeEvent &event : events)
            for (const TreeRow &row : event.rows)
                if (event.kind == kind)
                    texts.push_back(QStringList{row.path, row.text, wordsFor(row.state)}.join(u' ').toStdString());
        return texts;
    }

    std::string lastChange() const
    {
        const std::vector<std::string> changes = rows(Kind::Change);
        return changes.empty() ? std::string() : changes.back();
    }

    std::vector<TreeEvent> events;
    std::unique_ptr<MirroredPart> part;
    std::unique_ptr<TreeWatch> watcher; // goes before the part
};

TEST_F(WatchedTree, ShowsItsValuesAndThenEachChange)
{
    watch("/K");
    EXPECT_EQ(events.front().kind, Kind::Connected);
    EXPECT_EQ(rows(Kind::Value), std::vector<std::string>{"/K/Device/State idle valid"});
    setAtServer("/K/Device/State busy");
    ASSERT_TRUE(comesTrue([this] { return told(Kind::Change) == 1; }));
    EXPECT_EQ(rows(Kind::Change), std::vector<std::string>{"/K/Device/State busy valid"});
}

TEST_F(WatchedTree, ShowsWhatIsNewAndWhatGoes)
{
    watch("/K");
    setAtServer("/K/K\xc3\xb6ln/Deep/Value 1");
    ASSERT_TRUE(comesTrue([this] { return lastChange() == "/K/K\xc3\xb6ln/Deep/Value 1 valid"; }));
    server().tell("remove /K/K\xc3\xb6ln");
    ASSERT_TRUE(comesTrue([this] { return lastChange() == "/K/K\xc3\xb6ln/Deep/Value 1 deleted"; }));
    setAtServer("/K/K\xc3\xb6ln/Deep/Value 2");
    EXPECT_TRUE(comesTrue([this] { return lastChange() == "/K/K\xc3\xb6ln/Deep/Value 2 valid"; }));
}

TEST_F(WatchedTree, ShowsALossOnceAndAllValuesAfterTheReturn)
{
    watch("/K");
    killServer();
    ASSERT_TRUE(comesTrue([this] { return told(Kind::Lost) == 1; }));
    EXPECT_EQ(told(Kind::Change), 0);
    startServer();
    ASSERT_TRUE(comesTrue([this] { return told(Kind::Value) == 2; }));
    EXPECT_EQ(told(Kind::Connected), 2);
    setAtServer("/K/Device/State busy");
    ASSERT_TRUE(comesTrue([this] { return told(Kind::Change) == 1; }));
    EXPECT_EQ(rows(Kind::Value),
              (std::vector<std::string>{"/K/Device/State idle valid", "/K/Device/State idle valid"}));
}

TEST_F(WatchedTree, IsOfOneValueWhereThePathIsThatOfAValue)
{
    watch("/K/Device/State");
    setAtServer("/K/Device/Other 1");
    setAtServer("/K/Device/State busy");
    ASSERT_TRUE(comesTrue([this] { return told(Kind::Change) == 1; }));
    EXPECT_EQ(rows(Kind::Value), std::vector<std::string>{"/K/Device/State idle valid"});
    EXPECT_EQ(rows(Kind::Change), std::vector<std::string>{"/K/Device/State busy valid"});
}

TEST_F(WatchedTree, HasToHaveThePath)
{
    for (const char *const path : {"/K/Nothing", "/K/Device/State/Below", "/Nothing/At/All"}) {
        for (const auto look : {MirroredPart::Look::AtNode, MirroredPart::Look::AtItem}) {
            try {
                const MirroredPart absent(address(), QString::fromUtf8(path), look, limit);
                ADD_FAILURE() << path;
            } catch (const Failure &failure) {
                EXPECT_EQ(failure.exitCode, ExitCode::Refused);
                EXPECT_THAT(failure.what(), testing::HasSubstr(path));
            }
        }
    }
}

TEST_F(WatchedTree, HasToBeThere)
{
    killServer();
    try {
        const MirroredPart part(address(), QStringLiteral("/K"), MirroredPart::Look::AtNode,
                                std::chrono::milliseconds(50));
        ADD_FAILURE();
    } catch (const Failure &failure) {
        EXPECT_EQ(failure.exitCode, ExitCode::NotReachable);
        EXPECT_THAT(failure.what(), testing::HasSubstr((address().ipAddress + QLatin1String(":8004")).toStdString()));
    }
}

} // namespace

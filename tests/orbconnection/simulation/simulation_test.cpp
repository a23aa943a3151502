#include "coresupport/errorhandler.h"
#include "tests/orbconnection/simulation/link.h"

#include <gtest/gtest.h>

using namespace simulation;

namespace
{
/// A server, clients of it, and a client of one of these, which mirrors and serves.
class World
{
public:
    explicit World(std::uint64_t seed) : random(seed)
    {
        // Little room, so that what waits is merged, cut into batches, and comes in pieces.
        MirrorTiming timing;
        timing.batchBytes = random.oneOf(std::array{40, 200, 4000});
        timing.windowBytes = random.oneOf(std::array{60, 500, 10000});
        timing.queueBytes = 2 * timing.windowBytes;
        addSide(QStringLiteral("/K/D"), true);
        const int clients = 1 + random.below(5);
        for (int i = 0; i < clients; ++i)
            join(*sides.front(), timing);
        if (clients > 1)
            join(*sides.back(), timing);
    }

    void step()
    {
        if (random.happens(45))
            random.oneOf(sides)->act(random);
        else
            random.oneOf(links)->act(random);
    }
    /// False, when it never comes to rest.
    bool settle()
    {
        for (int round = 0; round < 2000; ++round) {
            bool isQuiet = true;
            for (const auto &link : links)
                isQuiet = !link->settle() && isQuiet;
            if (isQuiet)
                return true;
        }
        return false;
    }
    std::string difference() const
    {
        std::string all;
        for (const auto &link : links)
            if (const std::string found = link->difference(); !found.empty())
                all += found + '\n';
        return all;
    }
    std::size_t fingerprint() const
    {
        std::size_t all = 0;
        for (const auto &link : links)
            all = all * 31 + link->fingerprint();
        return all;
    }

private:
    void join(Side &server, const MirrorTiming &timing)
    {
        addSide(QStringLiteral("/C%1").arg(sides.size()), false);
        links.push_back(std::make_unique<Link>(server, *sides.back(), timing));
    }

    void addSide(const QString &top, bool isServer)
    {
        trees.push_back(std::make_unique<values::Tree>());
        sides.push_back(std::make_unique<Side>(*trees.back(), top, isServer));
    }

    Random random;
    std::vector<std::unique_ptr<values::Tree>> trees;
    std::vector<std::unique_ptr<Side>> sides;
    std::vector<std::unique_ptr<Link>> links;
};

constexpr int stepsPerRun = 1500;
constexpr int restsPerRun = 3;

/// What differs after the run of @p seed; empty: nothing.
std::string differenceAfter(std::uint64_t seed)
{
    World world(seed);
    for (int rest = 0; rest < restsPerRun; ++rest) {
        for (int i = 0; i < stepsPerRun / restsPerRun; ++i)
            world.step();
        if (!world.settle())
            return "it never comes to rest";
        if (const std::string found = world.difference(); !found.empty())
            return found;
    }
    return {};
}

std::uint64_t numberFrom(const char *variable, std::uint64_t otherwise)
{
    const QByteArray text = qgetenv(variable);
    return text.isEmpty() ? otherwise : text.toULongLong();
}

class MirrorSimulation : public testing::Test
{
protected:
    MirrorSimulation() { ErrorHandler::Instance().setTraceMask(0); }
};

/// KORVE_SIMULATION_SEED is the first seed, KORVE_SIMULATION_RUNS how many there are.
TEST_F(MirrorSimulation, EndsEqualWhereverItRests)
{
    const std::uint64_t first = numberFrom("KORVE_SIMULATION_SEED", 1);
    const std::uint64_t runs = numberFrom("KORVE_SIMULATION_RUNS", 2000);
    for (std::uint64_t seed = first; seed < first + runs; ++seed)
        ASSERT_EQ(differenceAfter(seed), "") << "KORVE_SIMULATION_SEED=" << seed << " repeats it";
}

TEST_F(MirrorSimulation, RepeatsARunExactly)
{
    const auto fingerprintAfter = [](std::uint64_t seed) {
        World world(seed);
        for (int i = 0; i < stepsPerRun; ++i)
            world.step();
        return world.fingerprint();
    };
    EXPECT_EQ(fingerprintAfter(5), fingerprintAfter(5));
    EXPECT_NE(fingerprintAfter(5), fingerprintAfter(6));
}
} // namespace

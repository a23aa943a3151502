#include "installation/recorder/storeanswer.h"

#include <gtest/gtest.h>

#include <memory>

using installation::recorder::StoreAnswer;

namespace
{

struct Thrown {
    std::shared_ptr<int> mark;
};

TEST(StoreAnswer, IsWhatTheWorkReturns)
{
    int given = 7;
    const auto work = [](int &number) { return std::make_unique<int>(number); };
    EXPECT_EQ(*StoreAnswer<std::unique_ptr<int>>::of(work, given).take(), 7);
}

TEST(StoreAnswer, KeepsNothingOfWhatItHasThrown)
{
    const auto mark = std::make_shared<int>();
    const auto work = [&mark] { throw Thrown{mark}; };
    StoreAnswer<void> answer = StoreAnswer<void>::of(work);
    EXPECT_EQ(mark.use_count(), 2);
    EXPECT_THROW(answer.take(), Thrown);
    EXPECT_EQ(mark.use_count(), 1);
}

} // namespace

#include "valuetreelib/ikeyitemtemplate.h"
#include "valuetreelib/ivaluefrequencyitemmap.h"

#include "tests/valuetreelib/treetestsupport.h"

#include <gtest/gtest.h>

namespace values
{
/// Only named by the interface.
template <> class ChangeLogTemplate<char, unsigned int>
{
};
} // namespace values

namespace
{
using namespace values;

struct Item : valueitemmap::IKeyItemTemplate<unsigned int> {
    explicit Item(unsigned int key) : key(key) {}
    unsigned int GetKey() const override { return key; }
    unsigned int key;
};

/// A value and a keyed map in one, as the map family is.
class ItemsValue : public TextValue, public IValueFrequencyItemMap
{
public:
    std::size_t Size() const override { return 1; }
    const ChangeLogTemplate<char, unsigned int> &GetChangeLog() const override { return changeLog; }
    std::vector<unsigned int> IndexVector() const override { return {item.GetKey()}; }
    bool Contains(unsigned int key) const override { return key == item.GetKey(); }
    ValueBase *GetValueBase() override { return this; }

private:
    Item item{7};
    ChangeLogTemplate<char, unsigned int> changeLog;
};

TEST(KeyedMapInterfaces, LetAValueShowItsKeys)
{
    ItemsValue value;
    Observable *const subject = &value;
    auto *const map = dynamic_cast<valueitemmap::IHasChangeLogValueTemplate<unsigned int> *>(subject);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->GetValueBase(), &value);
    EXPECT_EQ(map->IndexVector(), std::vector<unsigned int>{7});
    EXPECT_TRUE(map->Contains(7));
    EXPECT_EQ(map->Size(), 1u);
}
} // namespace

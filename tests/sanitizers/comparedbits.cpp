#include <cstdint>

// GCC 12 with the thread sanitizer and -O1 finds here that a bit differs from itself. -fno-tree-ter, which the preset `tsan`
// has for that reason, is enough; without it this program ends with 1.

struct Bits {
    std::uint64_t word;
    bool test(int bit) const { return word >> bit & 1; }
};

__attribute__((noinline)) bool areEqual(const Bits &one, const Bits &other, const int &bit)
{
    const bool isSet = one.test(bit);
    if (isSet != other.test(bit))
        return false;
    return !isSet || bit > 0;
}

int main(int count, char **)
{
    const Bits bits{1u << count};
    return areEqual(bits, bits, count) ? 0 : 1;
}

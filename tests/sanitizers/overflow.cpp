#include <limits>

/// Counts past the end.
int main(int argc, char **)
{
    int count = std::numeric_limits<int>::max();
    count += argc;
    return count > 0 ? 1 : 0;
}

#include "fuzz/support/allocations.h"
#include "fuzz/support/require.h"
#include "korvebase/recordidentifier.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using korve::RecordIdentifier;

namespace
{

const RecordIdentifier kept(QStringLiteral("subsystem"), QStringLiteral("device"), QStringLiteral("record"));

/// Nothing is made room for that the input does not have. A container may take twice what it needs.
std::size_t mostFor(std::size_t size)
{
    constexpr std::size_t ownNeeds = 1 << 15;
    return 2 * size + ownNeeds;
}

/// Whether a whole block begins at @p position, as its length says; only then may the form without an end be asked.
bool isWholeBlock(const char *position, const char *end)
{
    std::uint32_t length = 0;
    if (std::size_t(end - position) < sizeof length)
        return false;
    std::memcpy(&length, position, sizeof length);
    return std::size_t(end - position) - sizeof length >= length;
}

/// The form without an end must read what the other reads.
void requireSameWithoutEnd(const char *position, const char *behind, const RecordIdentifier &expected)
{
    const char *cursor = position;
    require(Ulma::fromCharStream<RecordIdentifier>(&cursor) == expected);
    require(cursor == behind);
}

void requireSound(const RecordIdentifier &identifier)
{
    require(identifier.hashValue() == static_cast<int>(qHash(identifier.recordID(), 0)));
    require(identifier.valid() == identifier.toString().contains(u'@'));
    const std::string stream = Ulma::toStandardString(identifier);
    const char *cursor = stream.data();
    RecordIdentifier again = kept;
    require(Ulma::fromCharStream(&cursor, stream.data() + stream.size(), again));
    require(cursor == stream.data() + stream.size() && again == identifier);
}

} // namespace

/// Reads identifiers, one behind the other, until something is none.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::vector<char> stream(data, data + size); // ends where its memory ends
    const char *const end = stream.data() + stream.size();
    const char *cursor = stream.data();
    while (true) {
        const char *const position = cursor;
        RecordIdentifier identifier = kept;
        const Allocations allocations;
        const bool isRead = Ulma::fromCharStream(&cursor, end, identifier);
        require(allocations.largest() <= mostFor(size));
        if (isRead)
            requireSound(identifier);
        else
            require(cursor == position && identifier == kept);
        if (isWholeBlock(position, end))
            requireSameWithoutEnd(position, cursor, isRead ? identifier : RecordIdentifier());
        if (!isRead)
            return 0;
        require(cursor > position && cursor <= end);
    }
}

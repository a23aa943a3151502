#include "orbconnection/batchwriter.h"
#include "orbconnection/mirrorwire.h"

#include <gtest/gtest.h>

using namespace mirror;
using namespace std::string_literals;

namespace
{
TEST(MirrorBatch, HasTheseBytes)
{
    std::string bytes;
    appendHeader(bytes, 2);
    appendRecord(bytes, {.kind = RecordKind::SnapshotBegin, .count = 1});
    appendRecord(bytes, {.kind = RecordKind::Applied, .count = 3});
    appendRecord(bytes, {.kind = RecordKind::Path, .path = "D"});
    appendRecord(bytes, {.kind = RecordKind::Node, .number = 1});
    appendRecord(bytes, {.kind = RecordKind::Value, .number = 5, .type = 1, .typeName = "T", .frames = "ff"});
    appendRecord(bytes, {.kind = RecordKind::Change, .number = 5, .frames = "f"});
    appendRecord(bytes, {.kind = RecordKind::Set, .number = 5, .type = 1, .frames = "f"});
    appendRecord(bytes, {.kind = RecordKind::ValueGone, .number = 5});
    appendRecord(bytes, {.kind = RecordKind::NodeGone, .number = 1});
    appendRecord(bytes, {.kind = RecordKind::SnapshotEnd});
    EXPECT_EQ(bytes, "\x02\x02\0\0\0\0\0\0\0"s
                     "\x01\x01\0\0\0\0\0\0\0"s
                     "\x03\x03\0\0\0\0\0\0\0"s
                     "\x04\x01\0\0\0D"s
                     "\x05\x01\0\0\0"s
                     "\x07\x05\0\0\0\x01\0\0\0\x01\0\0\0T\x02\0\0\0ff"s
                     "\x09\x05\0\0\0\x01\0\0\0f"s
                     "\x0a\x05\0\0\0\x01\0\0\0\x01\0\0\0f"s
                     "\x08\x05\0\0\0"s
                     "\x06\x01\0\0\0"s
                     "\x02"s);
}

TEST(MirrorBatch, OfAnotherVersionIsNotRead)
{
    std::string bytes;
    appendHeader(bytes, 1);
    bytes[0] = 1;
    values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
    EXPECT_FALSE(readHeader(in));
}

TEST(MirrorBatch, LengthBeyondTheBytesThatAreLeftIsNotRead)
{
    const std::string bytes = "\x04\xff\xff\xff\xff D"s;
    values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
    EXPECT_FALSE(readRecord(in));
}

TEST(MirrorBatch, WithAPathThatLeadsElsewhereIsNotRead)
{
    for (const char *path : {"/", "/D", "D/", "D//x"}) {
        std::string bytes;
        appendRecord(bytes, {.kind = RecordKind::Path, .path = path});
        values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
        EXPECT_FALSE(readRecord(in)) << path;
    }
}

TEST(MirrorBatch, RefusesARecordThatIsTooLargeForIt)
{
    MirrorTiming timing;
    timing.maximumBatchBytes = 1000;
    std::vector<std::string> batches;
    Outlet outlet;
    outlet.put = [&](quint64, std::string bytes) { batches.push_back(std::move(bytes)); };
    outlet.waiting = [] { return std::size_t(0); };
    BatchWriter writer(timing, outlet);
    const auto writes = [&](std::size_t size) {
        return writer.write({.kind = RecordKind::Change, .number = 1, .frames = std::string(size, 'f')});
    };
    EXPECT_TRUE(writes(100));
    EXPECT_TRUE(writes(901));
    EXPECT_TRUE(writes(800));
    EXPECT_FALSE(writes(5000));
    writer.flush();
    ASSERT_EQ(batches.size(), 3u);
    for (const std::string &batch : batches)
        EXPECT_LE(batch.size(), 1000u);
    EXPECT_GT(batches[1].size(), 900u);
}

TEST(MirrorBatch, IsNeverTooLongWhateverItsRecord)
{
    MirrorTiming timing;
    timing.maximumBatchBytes = 300;
    std::size_t longest = 0;
    Outlet outlet;
    outlet.put = [&](quint64, const std::string &bytes) { longest = std::max(longest, bytes.size()); };
    outlet.waiting = [] { return std::size_t(0); };
    BatchWriter writer(timing, outlet);
    const std::string frames(300, 'f');
    for (std::size_t size = 200; size <= frames.size(); ++size) {
        writer.write({.kind = RecordKind::Value, .number = 1, .typeName = "Text", .frames = {frames.data(), size}});
        writer.complete();
    }
    EXPECT_LE(longest, 300u);
    EXPECT_GT(longest, 280u);
}

TEST(MirrorBatch, CountsAsWaitingWhileItIsGathered)
{
    MirrorTiming timing;
    timing.windowBytes = 100;
    timing.queueBytes = 200;
    Outlet outlet;
    outlet.waiting = [] { return std::size_t(90); };
    BatchWriter writer(timing, outlet);
    EXPECT_TRUE(writer.hasRoom());
    writer.write({.kind = RecordKind::SnapshotEnd});
    EXPECT_FALSE(writer.hasRoom());
    EXPECT_TRUE(writer.hasRoomForEvents());
    writer.write({.kind = RecordKind::Change, .number = 1, .frames = std::string(100, 'f')});
    EXPECT_FALSE(writer.hasRoomForEvents());
}

TEST(MirrorBatch, OfAnUnknownKindIsNotRead)
{
    for (const char kind : {'\0', '\x0b', '\x10', '\xff'}) {
        const std::string bytes(20, kind);
        values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
        EXPECT_FALSE(readRecord(in));
    }
}
} // namespace

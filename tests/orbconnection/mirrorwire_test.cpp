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
    appendHeader(bytes, {2, 1});
    appendRecord(bytes, {.kind = RecordKind::SnapshotBegin});
    appendRecord(bytes, {.kind = RecordKind::Node, .path = "D"});
    appendRecord(bytes, {.kind = RecordKind::Value, .id = 5, .type = 1, .typeName = "T",
                         .path = "D/x", .frames = "ff"});
    appendRecord(bytes, {.kind = RecordKind::Change, .id = 5, .frames = "f"});
    appendRecord(bytes, {.kind = RecordKind::ValueGone, .id = 5});
    appendRecord(bytes, {.kind = RecordKind::NodeGone, .path = "D"});
    appendRecord(bytes, {.kind = RecordKind::SnapshotEnd});
    EXPECT_EQ(bytes, "\x01\x02\0\0\0\0\0\0\0\x01\0\0\0\0\0\0\0"s
                     "\x01"s
                     "\x03\x01\0\0\0D"s
                     "\x05\x05\0\0\0\x01\0\0\0\x01\0\0\0T\x03\0\0\0D/x\x02\0\0\0ff"s
                     "\x07\x05\0\0\0\x01\0\0\0f"s
                     "\x06\x05\0\0\0"s
                     "\x04\x01\0\0\0D"s
                     "\x02"s);
}

TEST(MirrorBatch, OfAnotherVersionIsNotRead)
{
    std::string bytes;
    appendHeader(bytes, {1, 0});
    bytes[0] = 2;
    values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
    EXPECT_FALSE(readHeader(in));
}

TEST(MirrorBatch, LengthBeyondTheBytesThatAreLeftIsNotRead)
{
    const std::string bytes = "\x03\xff\xff\xff\xff D"s;
    values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
    EXPECT_FALSE(readRecord(in));
}

TEST(MirrorBatch, WithAPathThatLeadsElsewhereIsNotRead)
{
    for (const char *path : {"/", "/D", "D/", "D//x"}) {
        std::string bytes;
        appendRecord(bytes, {.kind = RecordKind::NodeGone, .path = path});
        values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
        EXPECT_FALSE(readRecord(in)) << path;
    }
}

TEST(MirrorBatch, LeavesOutAValueThatIsTooLargeForIt)
{
    MirrorTiming timing;
    timing.maximumBatchBytes = 1000;
    std::vector<std::string> batches;
    BatchWriter writer(timing, [&](quint64, std::string bytes, bool) { batches.push_back(std::move(bytes)); });
    for (const std::size_t size : {100, 901, 800, 5000})
        writer.write({.kind = RecordKind::Change, .id = 1, .frames = std::string(size, 'f')});
    writer.flush();
    ASSERT_EQ(batches.size(), 3u);
    for (const std::string &batch : batches)
        EXPECT_LE(batch.size(), 1000u);
    EXPECT_GT(batches[1].size(), 900u);
}

TEST(MirrorBatch, OfAnUnknownKindIsNotRead)
{
    for (const char kind : {'\0', '\x08', '\xff'}) {
        const std::string bytes(20, kind);
        values::ByteCursor in{bytes.data(), bytes.data() + bytes.size()};
        EXPECT_FALSE(readRecord(in));
    }
}
} // namespace

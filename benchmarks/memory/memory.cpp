#include "benchmarks/support/recordpool.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <iostream>

#include <malloc.h>

using namespace values;
using KORVE_XML::KORVE_RecordData;

namespace
{

constexpr int valueCount = 100000;
constexpr int recordCount = 10000;

/// Bytes that are on the heap after @p make and were not before, the allocator's own among them.
template <typename Make> double bytesKept(const Make &make)
{
    const auto onHeap = [] {
        const struct mallinfo2 info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    const double before = onHeap();
    make();
    return onHeap() - before;
}

double bytesPerTreeValue()
{
    Tree tree;
    const double bytes = bytesKept([&tree] {
        for (int number = 0; number < valueCount; ++number) {
            auto value = std::make_unique<Value<QString>>();
            value->SetName(QStringLiteral("Value%1").arg(number % 10), nullptr);
            value->SetValue(QStringLiteral("a text of value %1").arg(number), nullptr);
            tree.addValue(QStringLiteral("/KORVE/Device/HB145/Node%1").arg(number / 10), std::move(value));
        }
    });
    require(tree.findValue(QStringLiteral("/KORVE/Device/HB145/Node9999/Value9")), "the tree has its values");
    return bytes / valueCount;
}

void appendTexts(const PlainRecord &record, std::vector<QString> &texts)
{
    texts.insert(texts.end(), {record.recordID, record.korveAddress, record.recordName, record.pelinInfo.text});
    for (const auto &notes : {record.bookmarks, record.history, record.linkedRecords})
        for (const PlainNote &note : notes)
            texts.push_back(note.text);
    for (const PlainState &processed : record.processingStates)
        texts.insert(texts.end(), {processed.user, processed.comment});
}

double bytesPerRecordBeyondTexts()
{
    std::vector<KORVE_RecordData> records;
    std::vector<QString> texts;
    records.reserve(recordCount);
    texts.reserve(recordCount * 20);
    const double whole = bytesKept([&records] {
        for (int number = 0; number < recordCount; ++number)
            records.push_back(makeRecord(makePlain(number)));
    });
    records.clear();
    const double ofTexts = bytesKept([&texts] {
        for (int number = 0; number < recordCount; ++number)
            appendTexts(makePlain(number), texts);
    });
    require(texts.size() <= texts.capacity() && texts.capacity() == recordCount * 20, "no list grows while it counts");
    return sizeof(KORVE_RecordData) + (whole - ofTexts) / recordCount;
}

} // namespace

int main()
{
    std::cout << bytesPerTreeValue() << " B per text value of a tree of 100 000, its path and content among them\n"
              << bytesPerRecordBeyondTexts() << " B per record object beyond its texts\n";
    return 0;
}

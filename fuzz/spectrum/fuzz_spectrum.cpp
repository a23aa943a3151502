#include "apps/spectrum/spectrumreader.h"
#include "fuzz/support/require.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace
{

using namespace apps;

struct Reading {
    std::optional<SpectrumHead> head;
    std::vector<quint64> positions;
    bool isComplete = false;
    bool isRefused = false;
};

void requireSound(const SpectrumHead &head, const SpectrumLine &line)
{
    require(quint32(line.levels.size()) == head.valuesPerLine);
    require(line.number < head.lineCount);
    require(line.position >= head.startPosition && line.position < head.stopPosition);
}

/// Reads @p bytes in pieces of @p step bytes.
Reading readIn(const QByteArray &bytes, int step)
{
    SpectrumReader reader;
    Reading reading;
    try {
        for (int begin = 0; begin < bytes.size(); begin += step) {
            reader.add(bytes.mid(begin, step));
            while (const auto line = reader.next()) {
                requireSound(*reader.head(), *line);
                reading.positions.push_back(line->position);
            }
        }
    } catch (const SpectrumError &) {
        reading.isRefused = true;
    }
    reading.head = reader.head();
    reading.isComplete = reader.isComplete();
    return reading;
}

} // namespace

/// Reads an overview spectrum in one piece and in several; both must come to the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), int(size - 1));
    const Reading whole = readIn(bytes, std::max(int(bytes.size()), 1));
    const Reading pieces = readIn(bytes, 1 + data[0]);
    require(whole.isRefused == pieces.isRefused);
    if (whole.isRefused)
        return 0; // pieces may have brought lines before the one that was wrong
    require(whole.head == pieces.head && whole.positions == pieces.positions);
    require(whole.isComplete == pieces.isComplete);
    require(!whole.head || whole.isComplete == (whole.positions.size() == whole.head->lineCount));
    return 0;
}

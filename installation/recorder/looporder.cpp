#include "installation/recorder/looporder.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr quint64 pieceBytes = moveRoomBytes / 2;

/// How many of @p size bytes need not be moved any more when @p present ones are there. The last piece may not be whole,
/// or not on the disk, so it is moved again: its bytes are still where they were.
quint64 movedBefore(quint64 present, quint64 size)
{
    if (present >= size)
        return size;
    return present == 0 ? 0 : (present - 1) / pieceBytes * pieceBytes;
}

} // namespace

void moveSection(const QString &from, quint64 begin, quint64 end, const QString &to, const std::stop_token &cancellation)
{
    const quint64 size = end - begin;
    File source = File::openForChange(from);
    File target = File::openToContinue(to);
    const auto present = static_cast<quint64>(target.status().st_size);
    if (present > size) // the end has come nearer
        target.truncate(size);
    quint64 moved = movedBefore(present, size);
    target.seek(moved); // over the last piece: were that cut off, nobody could tell that the one before it has gone
    while (moved < size) {
        if (cancellation.stop_requested())
            throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE, QStringLiteral("cancelled"));
        QByteArray piece(static_cast<int>(std::min(pieceBytes, size - moved)), Qt::Uninitialized);
        source.readWholeAt(begin + moved, piece.data(), piece.size());
        target.write(piece);
        target.sync();
        if (moved > 0)
            source.release(begin + moved - pieceBytes, pieceBytes);
        moved += static_cast<quint64>(piece.size());
    }
    target.sync();
    source.release(begin, size); // somebody may have it open still, who would keep the room
}

} // namespace installation::recorder

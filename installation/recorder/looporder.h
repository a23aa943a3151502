#pragma once

#include <QString>

#include <stop_token>

namespace installation::recorder
{

/// Room that is taken twice while samples are moved, at most.
constexpr quint64 moveRoomBytes = 8 << 20;

/// Moves the bytes of the file @p from between two positions to the file @p to, piece by piece from the first on, and
/// gives the room of each piece back to the disk when it and the next one are on the disk in the new place, at last all.
///
/// After an end of the process at any moment the same call goes on where that was; it may also name an earlier end than
/// before. @p from keeps its size; which of its bytes have gone only the next call knows.
/// @throws RecorderError, also when it is cancelled; what is moved stays so.
void moveSection(const QString &from, quint64 begin, quint64 end, const QString &to,
                 const std::stop_token &cancellation = {});

} // namespace installation::recorder

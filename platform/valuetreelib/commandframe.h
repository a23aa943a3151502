#pragma once

#include "valuetreelib/bytecursor.h"
#include "valuetreelib/valuetreelib_export.h"

#include <QtGlobal>

#include <optional>
#include <string>

/// The byte form of changes: a command string is a sequence of frames, each of which holds one command.
///
///     frame   = length body       length: one byte 0..254, or 255 and then 32 bits; of the body, at least 1
///     body    = command payload   command: one byte, see CommandId
///
/// Numbers are little-endian, doubles by their IEEE bits. A payload has no byte too many: what a later version adds is
/// a new command, and those from firstSkippableCommand on may be skipped by who does not know them.
namespace values
{
enum CommandId : quint8 {
    SetTextCommand = 1,   ///< text to the end, see StreamFormat<QString>
    SetBoolCommand = 2,   ///< 1 byte, 0 or 1
    SetIntCommand = 3,    ///< 4 bytes
    SetUnsignedCommand = 4,
    SetInt64Command = 5,  ///< 8 bytes
    SetDoubleCommand = 6,
    SelectKeyCommand = 7, ///< 8 bytes
    SetStateCommand = 8,  ///< 1 byte, 0 to greatestState, but not deleted
    SetLimitsCommand = 9, ///< the number of the command that sets the content, then minimum, maximum, step
    SetSelectionItemsCommand = 10, ///< 32 bits of count; each: key (8), number (8), 32 bits of length and the text
    MapSetAtCommand = 20,          // keyed maps have 20 to 22
    MapEraseAtCommand = 21,
    MapClearCommand = 22,
    firstSkippableCommand = 64,
};
/// Added to a command: its change is told to observers even if it changes nothing.
constexpr quint8 forcedCommandFlag = 0x80;

struct CommandFrame {
    quint8 command; ///< with forcedCommandFlag, if set
    ByteCursor payload;
};

/// Takes the next frame. Nothing, when the bytes that are left are no whole frame.
VALUETREELIB_EXPORT std::optional<CommandFrame> nextFrame(ByteCursor &in);

/// Turns what was appended behind the byte at @p start, which must be a placeholder, into the body of a frame.
VALUETREELIB_EXPORT void closeFrame(std::string &out, std::size_t start);

/// Appends a frame whose payload @p writePayload appends.
template <typename WritePayload> void appendFrame(std::string &out, quint8 command, const WritePayload &writePayload)
{
    const std::size_t start = out.size();
    out.push_back('\0');
    out.push_back(static_cast<char>(command));
    writePayload(out);
    closeFrame(out, start);
}
} // namespace values

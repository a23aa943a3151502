#include "orbconnection/unconfirmedchanges.h"

#include "valuetreelib/commandframe.h"

namespace mirror
{
namespace
{
quint8 idIn(const values::CommandFrame &frame)
{
    return frame.command & static_cast<quint8>(~values::forcedCommandFlag);
}
} // namespace

void UnconfirmedChanges::add(const values::ValueBase *value, std::string_view frames, quint64 sequence)
{
    Change &change = changes[value];
    change.sequence = sequence;
    values::ByteCursor in{frames.data(), frames.data() + frames.size()};
    while (const std::optional<values::CommandFrame> frame = values::nextFrame(in))
        change.commands.set(idIn(*frame));
}

void UnconfirmedChanges::announce(const values::ValueBase *value, std::string_view frames, quint64 sequence)
{
    add(value, frames, sequence);
    changes[value].announced = sequence;
}

void UnconfirmedChanges::confirm(quint64 sequence)
{
    if (sequence == confirmed || changes.isEmpty())
        return;
    confirmed = sequence;
    for (auto change = changes.begin(); change != changes.end();)
        change = change->sequence <= sequence ? changes.erase(change) : std::next(change);
}

void UnconfirmedChanges::clear()
{
    changes.clear();
    confirmed = 0;
}

bool UnconfirmedChanges::isAnnounced(const values::ValueBase *value) const
{
    return changes.value(value).announced > confirmed;
}

std::string_view UnconfirmedChanges::without(const values::ValueBase *value, std::string_view frames,
                                             std::string &scratch) const
{
    const auto change = changes.constFind(value);
    if (change == changes.constEnd())
        return frames;
    scratch.clear();
    values::ByteCursor in{frames.data(), frames.data() + frames.size()};
    const char *begin = in.position;
    while (const std::optional<values::CommandFrame> frame = values::nextFrame(in)) {
        if (!change->commands.test(idIn(*frame)))
            scratch.append(begin, in.position);
        begin = in.position;
    }
    scratch.append(begin, in.end); // what is no frame is for the value to refuse
    return scratch;
}
} // namespace mirror

#pragma once

#include <QHash>

#include <bitset>
#include <string>
#include <string_view>

namespace values
{
class ValueBase;
}

namespace mirror
{
/// The changes that a client has made and of which it does not know yet that the server has made them, too.
///
/// What the server says of the same content until then is older, and would undo the client's change on this side alone.
class UnconfirmedChanges
{
public:
    /// @p frames have gone into the batch @p sequence.
    void add(const values::ValueBase *value, std::string_view frames, quint64 sequence);
    /// The same, where @p frames are the value's first: the server does not have it yet.
    void announce(const values::ValueBase *value, std::string_view frames, quint64 sequence);
    /// The server has applied all batches up to @p sequence.
    void confirm(quint64 sequence);
    void remove(const values::ValueBase *value) { changes.remove(value); }
    /// Sequences count from 1 again.
    void clear();

    bool isAnnounced(const values::ValueBase *value) const;
    /// What of the server's @p frames is to be applied; @p scratch may hold it.
    std::string_view without(const values::ValueBase *value, std::string_view frames, std::string &scratch) const;

private:
    struct Change {
        quint64 sequence = 0;
        quint64 announced = 0;
        std::bitset<256> commands;
    };

    QHash<const values::ValueBase *, Change> changes;
    quint64 confirmed = 0;
};
} // namespace mirror

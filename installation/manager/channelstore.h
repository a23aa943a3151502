#pragma once

#include "installation/manager/channel.h"

namespace installation
{

/// The channels of a manager with what they were doing, in the SQLite file `channels.sqlite` of its folder.
///
/// An id is a number that is never given twice. A file that is damaged or not ours is put aside as
/// `channels.sqlite.refused`; a single channel that cannot be read is left out, and traced.
/// Thread: any, one at a time; blocks for the disk.  Errors: throws std::runtime_error that names file and reason.
class ChannelStore
{
public:
    /// Makes folder and file if they are missing.
    explicit ChannelStore(const QString &folder);

    ChannelList load() const;
    /// Keeps a new channel and returns its id.
    QString add(const ChannelSettings &settings) const;
    /// Returns when it is on the disk; an end of the process before that leaves what was there.
    void save(const Channel &channel) const;
    void remove(const QString &id) const;

private:
    const QString path;
};

} // namespace installation

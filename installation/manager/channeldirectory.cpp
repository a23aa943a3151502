#include "installation/manager/channeldirectory.h"

#include "coresupport/trace.h"

#include <algorithm>
#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/channeldirectory";

auto withId(ChannelList &channels, const QString &id)
{
    return std::find_if(channels.begin(), channels.end(), [&](const Channel &channel) { return channel.id == id; });
}

/// One that has got another name must not have got that of another channel.
void refuseDouble(const ChannelList &all, const Channel &before, const Channel &after)
{
    if (before.settings.name == after.settings.name)
        return;
    const bool isDouble = std::any_of(all.begin(), all.end(), [&](const Channel &other) {
        return other.id != after.id && other.settings.isNamedLike(after.settings);
    });
    if (isDouble)
        throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
}

} // namespace

template <typename Work> auto ChannelDirectory::kept(Work work)
{
    try {
        return work();
    } catch (const std::runtime_error &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("a channel cannot be kept: %1").arg(QString::fromUtf8(error.what())); });
        throw CORBA::PERSIST_STORE(0, CORBA::COMPLETED_NO);
    }
}

ChannelDirectory::ChannelDirectory(const QString &folder, Listener listener)
    : store(folder), listener(std::move(listener)), channels(store.load())
{
    if (this->listener)
        this->listener(channels, lastError);
}

ChannelList ChannelDirectory::list() const
{
    const std::scoped_lock lock(mutex);
    return channels;
}

std::optional<Channel> ChannelDirectory::find(const QString &id) const
{
    ChannelList all = list();
    const auto found = withId(all, id);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

ChannelDirectory::Entry ChannelDirectory::enter(const ChannelSettings &settings,
                                                const std::function<bool(const Channel &)> &mayRenew)
{
    const std::scoped_lock order(changing);
    ChannelList all = list();
    const auto known = std::find_if(all.begin(), all.end(),
                                    [&](const Channel &channel) { return channel.settings.isNamedLike(settings); });
    if (known == all.end())
        return all.size() < maximumChannels ? Entry{Entry::State::Added, add(std::move(all), settings)}
                                            : Entry{Entry::State::Full};
    if (!mayRenew(*known))
        return {Entry::State::Taken, *known};
    const Channel before = *known;
    known->settings = settings;
    const Channel renewed = *known;
    keep(before, renewed);
    show(std::move(all));
    return {Entry::State::Renewed, renewed};
}

/// To @p all that there are.
Channel ChannelDirectory::add(ChannelList all, const ChannelSettings &settings)
{
    all.push_back({.id = kept([&] { return store.add(settings); }), .settings = settings});
    const Channel added = all.back();
    show(std::move(all));
    return added;
}

bool ChannelDirectory::remove(const QString &id, const std::function<bool(const Channel &)> &mayGo)
{
    const std::scoped_lock order(changing);
    ChannelList all = list();
    const auto found = withId(all, id);
    if (found == all.end() || !mayGo(*found))
        return false;
    kept([&] { store.remove(id); });
    all.erase(found);
    show(std::move(all));
    return true;
}

std::optional<Channel> ChannelDirectory::change(const QString &id, const std::function<bool(Channel &)> &edit)
{
    return changeOne([&](ChannelList &all) -> Channel * {
        const auto found = withId(all, id);
        return found != all.end() && edit(*found) ? &*found : nullptr;
    });
}

std::optional<Channel> ChannelDirectory::changeOne(const std::function<Channel *(ChannelList &)> &choose)
{
    const std::scoped_lock order(changing);
    ChannelList all = list();
    const Channel *const chosen = choose(all);
    if (!chosen)
        return {};
    const Channel after = *chosen;
    const Channel before = *find(after.id);
    refuseDouble(all, before, after);
    keep(before, after);
    show(std::move(all));
    return after;
}

void ChannelDirectory::noteError(const QString &id, quint32 code, const QString &text)
{
    const std::scoped_lock order(changing);
    lastError = {lastError.number + 1, code, text};
    ChannelList all = list();
    const auto found = withId(all, id);
    if (found != all.end())
        found->error = lastError;
    show(std::move(all));
}

void ChannelDirectory::keep(const Channel &before, const Channel &after) const
{
    if (before.settings == after.settings && before.run == after.run)
        return;
    try {
        kept([&] { store.save(after); });
    } catch (const CORBA::PERSIST_STORE &) {
        if (before.settings != after.settings)
            throw;
        // A full disk must not keep a replay from ending.
    }
}

void ChannelDirectory::show(ChannelList newChannels)
{
    {
        const std::scoped_lock lock(mutex);
        channels = newChannels;
    }
    if (listener)
        listener(newChannels, lastError); // still in order: `changing` is held
}

} // namespace installation

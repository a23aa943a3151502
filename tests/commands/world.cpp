#include "tests/commands/world.h"

#include "korvebase/korveconfiguration.h"
#include "orbconnection/orbhandler.h"

#include <QtTest/QTest>

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr int patienceMs = 30000;

std::string asciiOf(const TQ_KORVE::wideText &text)
{
    std::string ascii;
    for (CORBA::ULong i = 0; i < text.length(); ++i)
        ascii += static_cast<char>(text[i]);
    return ascii;
}

TQ_KORVE::IF_Control_ptr findRecorder()
{
    const CCO::IF_CCO_c_var names = CorbaCommon::OrbHandler::Instance().centralService(std::chrono::seconds(2));
    const CORBA::Object_var found = names->Resolve("KorveRecorder/REC1/IF_Control", CCO::rtInstallation);
    return TQ_KORVE::IF_Control::_narrow(found);
}

template <typename Sequence, typename Matches> int countIf(const Sequence &sequence, const Matches &matches)
{
    int count = 0;
    for (CORBA::ULong i = 0; i < sequence.length(); ++i)
        count += matches(sequence[i]) ? 1 : 0;
    return count;
}

} // namespace

World::World(const QString &recordId) : record(recordId), recorder(findRecorder())
{
    connect();
}

void World::connect()
{
    using namespace KorveGUI;
    data = std::make_shared<KorveCommon::HMIServerConnectionData>(QString());
    data->GetConfiguration()->SetCurrentSubSystem(QStringLiteral("Main"));
    manager = std::make_shared<KorveGuiToServerCorbaHandler>(QString(), data, QString());
    if (!QTest::qWaitFor([this] { return manager->ReconnectToServer(); }, patienceMs))
        throw std::runtime_error("the manager is not found");
    admin = std::make_unique<GuiToServerAdminCorbaHandler>(manager);
    replay = std::make_unique<GuiToServerReplayCorbaHandler>(manager);
    exports = std::make_unique<GuiToServerExportCorbaHandler>(manager);
    if (!admin->Initialize())
        throw std::runtime_error("the manager has no administration");
    replay->Initialize(device);
}

std::string World::recordName() const
{
    const TQ_KORVE::struMETA_DATA_var told = recorder->getMetaData(recordUtf8);
    return asciiOf(told->recordName);
}

bool World::isDeletable() const
{
    const TQ_KORVE::struMETA_DATA_var told = recorder->getMetaData(recordUtf8);
    return told->deletable;
}

int World::historyEntries(const std::string &text) const
{
    const TQ_KORVE::seqHistory_var history = recorder->getHistory(recordUtf8);
    return countIf(history.in(), [&](const auto &entry) { return asciiOf(entry.historyEntry) == text; });
}

int World::historyEntries(quint64 timestampUs) const
{
    const TQ_KORVE::seqHistory_var history = recorder->getHistory(recordUtf8);
    return countIf(history.in(), [&](const auto &entry) { return entry.timestamp == timestampUs; });
}

int World::bookmarks(quint64 timestampUs) const
{
    const TQ_KORVE::seqBookmarks_var all = recorder->getBookmarks(recordUtf8);
    return countIf(all.in(), [&](const auto &bookmark) { return bookmark.timestamp == timestampUs; });
}

int World::records(const std::string &name) const
{
    const TQ_KORVE::seqMETA_DATA_var all = recorder->listAllRecords();
    return countIf(all.in(), [&](const auto &told) { return asciiOf(told.recordName) == name; });
}

int World::records() const
{
    const TQ_KORVE::seqMETA_DATA_var all = recorder->listAllRecords();
    return static_cast<int>(all->length());
}

quint64 World::deviceTime() const
{
    return recorder->getSystemTime();
}

TQ_KORVE::wideText deviceText(const std::string &ascii)
{
    TQ_KORVE::wideText text;
    text.length(static_cast<CORBA::ULong>(ascii.size()));
    std::copy(ascii.begin(), ascii.end(), text.get_buffer());
    return text;
}

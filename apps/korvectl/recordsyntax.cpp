#include "apps/korvectl/recordsyntax.h"

#include "korvebase/corbatoclientconverter.h"
#include "objectmodel/korve_recorddata.h"

namespace korvectl::syntax
{

namespace
{

using KORVE_XML::KORVE_RecordData;

constexpr const char *momentHelp = "A time in UTC such as 2026-11-21T12:32:22.629123Z, microseconds since 1970, or "
                                   "+1.5s after the record's beginning";
constexpr const char *momentWords = "a time: 2026-11-21T12:32:22.629123Z (UTC), microseconds since 1970, or +1.5s";

CLI::App *addForRecord(CLI::App &parent, CommandLine &line, const char *name, const char *purpose, Command command)
{
    CLI::App *const added = add(parent, line, name, purpose, command);
    record(*added, line);
    return added;
}

void takeSections(CLI::App &command, CommandLine &line)
{
    const auto take = [&line](const std::vector<std::string> &words) {
        for (const std::string &bytes : words) {
            const QString word = typed("SECTION", bytes);
            const auto section = Section::parsed(word);
            if (!section)
                refuse("SECTION", word, sectionWords);
            line.sections << *section;
        }
    };
    command
        .add_option_function<std::vector<std::string>>(
            "SECTION", take, "FROM:TO, in bytes (16000, 16kB) or times from the beginning (1.5s, 2min); none: all")
        ->type_name("");
}

/// Refuses rates that managers do not know: another one would go out instead.
std::optional<QString> parsedRate(const QString &word)
{
    namespace ToManager = KorveCommon::CorbaToClientConverter;
    if (!KORVE_RecordData::GetDataRates().contains(word))
        return {};
    const auto rate = KORVE_RecordData().NameToDataRate(word);
    const auto sent = ToManager::convertDataRateClassFromClient(ToManager::convertDataRateClassFromXml(rate));
    return sent == rate ? std::optional(word) : std::nullopt;
}

/// The last five are none that a manager can name.
std::optional<QString> parsedFormat(const QString &word)
{
    const QStringList formats = KORVE_RecordData::GetDataFormats().mid(0, KORVE_RecordData::IQBW + 1);
    return formats.contains(word) ? std::optional(word) : std::nullopt;
}

void describeStart(CLI::App &parent, CommandLine &line)
{
    CLI::App &start = *add(parent, line, "start", "Record samples from a network source", Command::RecordStart);
    identifier(start, "DEVICE", line.device, "The id of the device");
    text(start, "NAME", line.name, "The name of the new record");
    value(start, "--from", line.link.peer, Endpoint::parsed, "Where the samples come from", endpointWords)
        ->required()
        ->type_name("HOST:PORT");
    start.add_flag("--udp", line.link.isUdp, "The source sends datagrams to the device");
    value(start, "--rate", line.recording.dataRate, parsedRate, "The data-rate class; VUHF_1M by default",
          "a data rate that managers know, such as HF_4M or VUHF_1M")
        ->type_name("CLASS");
    value(start, "--sample-rate", line.recording.sampleRateHz, parsedNumber, "Samples per second; that of the class",
          "a number of samples per second")
        ->type_name("HZ");
    value(start, "--format", line.recording.dataFormat, parsedFormat, "The data format; RAW by default",
          "a data format, such as RAW or DIGITAL_AUDIO")
        ->type_name("FORMAT");
    start.add_option("--loop", line.recording.loopMiB, "Keep only the last so many MiB")
        ->type_name("MIB")
        ->check(CLI::Range(1, 1 << 30).description(""));
    start.add_option("--duration", line.recording.durationS, "End after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 1 << 30).description(""));
}

void describeStop(CLI::App &parent, CommandLine &line)
{
    CLI::App &stop = *add(parent, line, "stop", "End a recording, and remove its channel", Command::RecordStop);
    identifier(stop, "CHANNEL", line.channel, "The id of the channel, as `record start` told it");
    text(stop, "--comment", line.text, "Becomes an entry of the record's history")->type_name("TEXT");
}

void describeHistory(CLI::App &parent, CommandLine &line)
{
    CLI::App &history = *addGroup(parent, "history", "What was done with a record, and when");
    addForRecord(history, line, "list", "List the entries", Command::HistoryList);
    text(*addForRecord(history, line, "add", "Add an entry", Command::HistoryAdd), "TEXT", line.text, "The entry");
    value(*addForRecord(history, line, "remove", "Remove an entry", Command::HistoryRemove), "TIME", line.moment,
          Moment::parsed, momentHelp, momentWords)
        ->type_name("");
}

void describeBookmarks(CLI::App &parent, CommandLine &line)
{
    CLI::App &bookmarks = *addGroup(parent, "bookmarks", "Marked moments of a record");
    addForRecord(bookmarks, line, "list", "List the bookmarks", Command::BookmarksList);
    CLI::App &added = *addForRecord(bookmarks, line, "add", "Mark a moment", Command::BookmarksAdd);
    value(added, "TIME", line.moment, Moment::parsed, momentHelp, momentWords)->type_name("");
    text(added, "TEXT", line.text, "What there is");
    value(*addForRecord(bookmarks, line, "remove", "Remove a bookmark", Command::BookmarksRemove), "TIME", line.moment,
          Moment::parsed, momentHelp, momentWords)
        ->type_name("");
}

} // namespace

void describeRecord(CLI::App &parent, CommandLine &line)
{
    CLI::App &group = *addGroup(parent, "record", "Look at one record, change it, or make one");
    addForRecord(group, line, "show", "Show all that is known of it", Command::RecordShow);
    text(*addForRecord(group, line, "comment", "Set its comment, which is its name", Command::RecordComment), "TEXT",
         line.text, "The comment");
    CLI::App &deletable =
        *addForRecord(group, line, "deletable", "Allow or forbid its deletion", Command::RecordDeletable);
    value(deletable, "SWITCH", line.isOn, parsedSwitch, "on or off", "on or off")
        ->type_name("")
        ->check(CLI::IsMember({"on", "off"}));
    CLI::App &copy = *addForRecord(group, line, "copy", "Copy it, or parts of it, into a new one", Command::RecordCopy);
    takeSections(copy, line);
    text(copy, "--name", line.name, "The name of the copy; that of the record by default")->type_name("NAME");
    addForRecord(group, line, "delete", "Delete it, for good", Command::RecordDelete);
    describeHistory(group, line);
    describeBookmarks(group, line);
    describeStart(group, line);
    describeStop(group, line);
}

} // namespace korvectl::syntax

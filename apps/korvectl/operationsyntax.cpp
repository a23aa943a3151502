#include "apps/korvectl/operationsyntax.h"

#include "connectionmanagement/errorcatalogue.h"

#include <limits>

namespace korvectl::syntax
{

namespace
{

void takeRange(CLI::App &command, CommandLine &line)
{
    const auto take = [&line](const std::string &bytes) {
        const QString word = typed("--range", bytes);
        const auto section = Section::parsed(word);
        if (!section)
            refuse("--range", word, sectionWords);
        line.sections = {*section};
    };
    command.add_option_function<std::string>("--range", take, "FROM:TO in bytes or times; all of it by default")
        ->type_name("FROM:TO");
}

void describeReplayStart(CLI::App &parent, CommandLine &line)
{
    CLI::App &start = *add(parent, line, "start", "Replay a record", Command::ReplayStart);
    record(start, line);
    CLI::Option *const to =
        value(start, "--to", line.link.peer, Endpoint::parsed,
              "Send the samples there; by default, to a channel that is registered already", endpointWords)
            ->type_name("HOST:PORT");
    start.add_flag("--udp", line.link.isUdp, "As datagrams")->needs(to);
    takeRange(start, line);
    start.add_option("--count", line.link.replayCount, "Replay so many times; 0: again and again")
        ->type_name("NUMBER")
        ->capture_default_str()
        ->check(CLI::Range(qint64{0}, qint64{std::numeric_limits<quint32>::max()}).description(""));
    value(start, "--speed", line.link.speed, Speed::parsed, "How many times as fast as it was recorded, or max",
          "a speed, such as 0.5, 2 or max")
        ->type_name("FACTOR")
        ->needs(to);
}

CLI::Validator windows()
{
    return CLI::IsMember({"rectangle", "hamming", "hanning", "kaiser", "blackman"});
}

} // namespace

void describeReplay(CLI::App &parent, CommandLine &line)
{
    CLI::App &replay = *addGroup(parent, "replay", "Replay records");
    describeReplayStart(replay, line);
    record(*add(replay, line, "pause", "Pause a replay", Command::ReplayPause), line);
    record(*add(replay, line, "continue", "Continue a replay that is paused", Command::ReplayContinue), line);
    record(*add(replay, line, "stop", "End a replay", Command::ReplayStop), line);
    CLI::App &status = *add(replay, line, "status", "List the channels, and how far they are", Command::ReplayStatus);
    identifier(status, "DEVICE", line.device, "Only those of that device")->required(false);
    identifier(status, "RECORD", line.record, "Only those of that record")->required(false);
}

void describeSpectrum(CLI::App &parent, CommandLine &line)
{
    CLI::App &spectrum = *add(parent, line, "spectrum", "Show what is in a record, over time and frequency",
                              Command::Spectrum);
    record(spectrum, line);
    takeRange(spectrum, line);
    spectrum.add_option("--lines", line.spectrum.lineCount, "How many lines; by default, what fits")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1 << 16).description(""));
    // Lines of 2 samples tell nobody whether these are complex.
    spectrum.add_option("--fft", line.spectrum.fftSize, "Samples of a transform")
        ->type_name("SIZE")
        ->capture_default_str()
        ->check(CLI::Range(3, 1 << 20).description(""));
    spectrum.add_option_function<std::string>(
                "--window", [&line](const std::string &word) { line.spectrum.window = QString::fromStdString(word); },
                "The window of the transform; hanning by default")
        ->check(windows());
    path(spectrum, "--png", line.spectrum.picture, "Write a picture instead")->type_name("FILE");
}

void describeExport(CLI::App &parent, CommandLine &line)
{
    CLI::App &exporting = *add(parent, line, "export", "Fetch the files of a record", Command::Export);
    record(exporting, line);
    path(exporting, "--to", line.folder, "The folder; the current one by default")->type_name("FOLDER");
}

void describeTime(CLI::App &parent, CommandLine &line)
{
    CLI::App &time = *addGroup(parent, "time", "The clock of a device");
    identifier(*add(time, line, "get", "Show it", Command::TimeGet), "DEVICE", line.device, "The id of the device");
    CLI::App &set = *add(time, line, "set", "Set it", Command::TimeSet);
    identifier(set, "DEVICE", line.device, "The id of the device");
    value(set, "TIME", line.moment, Moment::parsedOrNow,
          "now, a time in UTC such as 2026-11-21T12:32:22.629123Z, or microseconds since 1970",
          "a time: now, 2026-11-21T12:32:22.629123Z (UTC), or microseconds since 1970")
        ->type_name("");
}

void describeErrors(CLI::App &parent, CommandLine &line)
{
    CLI::App &errors = *add(parent, line, "errors", "Explain the number of an error", Command::Errors);
    value(errors, "NUMBER", line.number, parsedNumber, "The number", "a number from 0 to 18446744073709551615")
        ->type_name("");
    std::vector<std::string> names;
    for (const auto &named : KorveManagement::ErrorCatalogue::tables())
        names.emplace_back(named.name);
    errors
        .add_option_function<std::string>(
            "--flow", [&line](const std::string &word) { line.flow = QString::fromStdString(word); },
            "Only in that work flow, also when it has but a sentence for all numbers")
        ->check(CLI::IsMember(names));
}

} // namespace korvectl::syntax

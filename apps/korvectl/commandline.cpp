#include "apps/korvectl/commandline.h"

#include "apps/korvectl/failure.h"

#include "coresupport/errorhandler.h"

#include <CLI/CLI.hpp>

namespace korvectl
{

namespace
{

/// What the command line holds, in the types of its parser.
struct Raw {
    std::string subsystem;
    std::string device;
    double timeoutSeconds = 5;
    int verbosity = 0;
    bool json = false;
    bool follow = false;
};

/// Returns the sub-command for the records; the other one is for the devices.
CLI::App *describe(CLI::App &app, Raw &raw)
{
    app.require_subcommand(1);
    app.fallthrough(); // options may stand behind the command, too
    app.add_option("--subsystem", raw.subsystem, "The subsystem to ask; the local one by default");
    app.add_option("--timeout", raw.timeoutSeconds, "Seconds to wait for the services to be there, and for each answer")
        ->capture_default_str()
        ->check(CLI::Range(0.1, 3600.0));
    app.add_flag("--json", raw.json, "Print JSON instead of a table");
    app.add_flag("-v,--verbose", raw.verbosity, "Trace errors and information to standard error; -vv: debugging, too");
    app.add_subcommand("devices", "List the recorder devices");
    CLI::App *const records = app.add_subcommand("records", "List the records of one device, or of all");
    records->add_option("DEVICE", raw.device, "The id of the device");
    records->add_flag("--follow", raw.follow,
                      "Stay until interrupted; tell of the loss and the return of the manager, and list again");
    app.footer("The central object service is at KORVE_CCO=HOST[:PORT], else at 127.0.0.1:8003.\n"
               "Exit codes: 0 success, 1 wrong command line, 2 a service is not reachable,\n"
               "3 a service refused the request, 4 any other failure.");
    return records;
}

unsigned maskFor(int verbosity)
{
    const auto normal = static_cast<unsigned>(TraceLevel::Normal);
    const auto debug = static_cast<unsigned>(TraceLevel::Debug);
    return verbosity == 0 ? 0 : verbosity == 1 ? normal : normal | debug;
}

} // namespace

std::optional<CommandLine> CommandLine::parse(int argc, char **argv, int &exitCode)
{
    Raw raw;
    CLI::App app("Asks the recorder manager of an installation.", "korvectl");
    const CLI::App *const records = describe(app, raw);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        const bool isHelp = app.exit(error) == 0;
        exitCode = static_cast<int>(isHelp ? ExitCode::Success : ExitCode::Usage);
        return {};
    }
    CommandLine line;
    line.command = records->parsed() ? Command::Records : Command::Devices;
    line.device = QString::fromStdString(raw.device);
    line.subsystem = QString::fromStdString(raw.subsystem);
    line.timeout = std::chrono::milliseconds(static_cast<int>(raw.timeoutSeconds * 1000));
    line.json = raw.json;
    line.follow = raw.follow;
    line.traceMask = maskFor(raw.verbosity);
    return line;
}

} // namespace korvectl

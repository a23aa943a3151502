#include "apps/korvectl/description.h"

#include "apps/korvectl/operationsyntax.h"
#include "apps/korvectl/recordsyntax.h"

#include "coresupport/errorhandler.h"
#include "programs/printable.h"
#include "programs/seconds.h"

#include <functional>
#include <limits>

namespace korvectl
{

namespace
{

constexpr double leastSeconds = 0.1;
constexpr double mostSeconds = 3600;
constexpr double secondsOfAYear = 366.0 * 24 * 3600;

unsigned maskFor(int verbosity)
{
    const auto normal = static_cast<unsigned>(TraceLevel::Normal);
    const auto debug = static_cast<unsigned>(TraceLevel::Debug);
    return verbosity == 0 ? 0 : verbosity == 1 ? normal : normal | debug;
}

std::chrono::milliseconds milliseconds(double seconds)
{
    return std::chrono::milliseconds(static_cast<qint64>(seconds * 1000));
}

std::function<std::string(const std::string &)> secondsWithin(double least, double most)
{
    return [least, most](const std::string &word) { return programs::complaintAboutSeconds(word, least, most); };
}

/// The parser asks for a command before it looks at what stands there instead.
std::string complaintOf(const CLI::App &parser, const CLI::Error &error)
{
    const std::string words = error.what();
    const std::vector<std::string> strange = parser.remaining(true);
    const bool isCommandWanted = words == CLI::RequiredError::Subcommand(1).what();
    const std::string complaint =
        isCommandWanted && !strange.empty() ? "There is no command \"" + strange.front() + "\"." : words;
    return programs::printable(QString::fromStdString(complaint)).toStdString(); // it quotes what was typed
}

} // namespace

Description::Description()
{
    app.require_subcommand(1);
    app.failure_message([](const CLI::App *parser, const CLI::Error &error) {
        return "korvectl: " + complaintOf(*parser, error) + "\nRun with --help for more information.\n";
    });
    app.fallthrough(); // options may stand behind the command, too
    describeOptions();
    describeLists();
    syntax::describeRecord(app, line);
    syntax::describeReplay(app, line);
    syntax::describeSpectrum(app, line);
    syntax::describeExport(app, line);
    syntax::describeTime(app, line);
    describeWatch(*add(app, "watch", "Tell of the states of records as they change, until interrupted",
                       Command::Watch));
    syntax::describeErrors(app, line);
    describeTree();
    add(app, "doctor", "Check each link to the devices, and say what to do about the first that is broken",
        Command::Doctor);
    describeCompletion();
    app.footer("The central object service is at KORVE_CCO=HOST[:PORT], else at 127.0.0.1:8003.\n"
               "Exit codes: 0 success, 1 wrong command line, 2 a service is not reachable,\n"
               "3 a service refused the request, or there is no such device or path, 4 any other failure,\n"
               "5 a part of the answer is missing, the rest is printed,\n"
               "6 whether the command was carried out is unknown: the connection was lost.");
}

void Description::describeOptions()
{
    syntax::text(app, "--subsystem", line.subsystem, "The subsystem to ask; the local one by default")
        ->type_name("SUBSYSTEM");
    app.add_option("--timeout", timeoutSeconds, "Seconds to wait for the services to be there, and for each answer")
        ->type_name("SECONDS")
        ->capture_default_str()
        ->check(secondsWithin(leastSeconds, mostSeconds));
    app.add_flag("--json", line.json, "Print JSON instead of a table");
    app.set_version_flag("--version", "korvectl " KORVE_VERSION, "Print the version and end");
    app.add_flag("-v,--verbose", verbosity, "Trace errors and information to standard error; -vv: debugging, too");
}

void Description::describeLists()
{
    add(app, "devices", "List the recorder devices", Command::Devices);
    CLI::App *const records = add(app, "records", "List the records of one device, or of all", Command::Records);
    syntax::identifier(*records, "DEVICE", line.device, "The id of the device")->required(false);
    records->add_flag("--follow", line.follow,
                      "Stay until interrupted; tell of the loss and the return of the manager, and list again");
}

void Description::describeTree()
{
    CLI::App *const tree = app.add_subcommand("tree", "Look at the values that the manager publishes");
    tree->require_subcommand(1);
    CLI::App *const list = add(*tree, "ls", "List what stands directly below a path", Command::TreeList);
    addPath(*list, false);
    list->add_flag("-r,--recursive", line.recursive, "List all that stands below it");
    addPath(*add(*tree, "get", "Print the value at a path, and all values below it", Command::TreeGet), true);
    CLI::App *const watch =
        add(*tree, "watch", "Print values, and then each change, until interrupted", Command::TreeWatch);
    addPath(*watch, false);
    describeWatch(*watch);
}

void Description::describeWatch(CLI::App &watch)
{
    watch.add_option("--count", line.changeLimit, "End after so many changes")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""));
    watch.add_option("--for", watchSeconds, "End after so many seconds")
        ->type_name("SECONDS")
        ->check(secondsWithin(leastSeconds, secondsOfAYear));
}

void Description::describeCompletion()
{
    add(app, "completion", "Print what makes a shell complete korvectl's command lines", Command::Completion)
        ->add_option("SHELL", shell, "The shell")
        ->capture_default_str()
        ->check(CLI::IsMember({"bash"}));
    CLI::App *const complete = add(app, "complete", "What can stand at the end of LINE", Command::Complete);
    complete->group(""); // for that script; nobody else is shown it
    complete->add_option("LINE", typedLine)->required();
    complete->add_option("WORD", typedWord)->required();
}

CLI::App *Description::add(CLI::App &parent, const char *name, const char *purpose, Command command)
{
    return syntax::add(parent, line, name, purpose, command);
}

void Description::addPath(CLI::App &command, bool isRequired)
{
    CLI::Option *const option =
        syntax::text(command, "PATH", line.path, "A path such as /KORVE/Device")->required(isRequired);
    if (!isRequired)
        option->default_str(line.path.toStdString());
}

CommandLine Description::parse(int argc, char **argv)
{
    app.parse(argc, argv);
    line.typedLine = QString::fromStdString(typedLine);
    line.typedWord = QString::fromStdString(typedWord);
    line.timeout = milliseconds(timeoutSeconds);
    line.watchTime = milliseconds(watchSeconds);
    line.traceMask = maskFor(verbosity);
    return line;
}

} // namespace korvectl

#include "apps/korvectl/operationsyntax.h"

#include "apps/korvectl/errororigin.h"

namespace korvectl::syntax
{

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
    value(errors, "NUMBER", line.number, parsedNumber, "The number", "a number")->type_name("");
    std::vector<std::string> names;
    for (const NamedFlow &named : allFlows())
        names.emplace_back(named.name);
    errors
        .add_option_function<std::string>(
            "--flow", [&line](const std::string &word) { line.flow = QString::fromStdString(word); },
            "Only in that work flow, also when it has but a sentence for all numbers")
        ->check(CLI::IsMember(names));
}

} // namespace korvectl::syntax

#pragma once

#include "apps/korvectl/commandline.h"

#include <CLI/CLI.hpp>

/// Commands and parameters for a parser, which fill a CommandLine: it has to outlive the parsing.
namespace korvectl::syntax
{

/// What a section is.
inline constexpr const char *sectionWords =
    "a section FROM:TO of bytes or times that ends behind its beginning, such as 0:16000 or 1.5s:3s";
/// What an Endpoint is.
inline constexpr const char *endpointWords = "HOST:PORT, an IPv4 address and a port";

/// A sub-command of @p parent that stands for @p command.
CLI::App *add(CLI::App &parent, CommandLine &line, const char *name, const char *purpose, Command command);
/// A sub-command that needs one of its own.
CLI::App *addGroup(CLI::App &parent, const char *name, const char *purpose);

/// @p name begins with "-" for an option; else it is a parameter, and has to be there.
CLI::Option *text(CLI::App &command, const char *name, QString &target, const char *purpose);
/// Adds a text that is the path of a file or a folder here.
CLI::Option *path(CLI::App &command, const char *name, QString &target, const char *purpose);
/// Adds a text that goes out as an identifier.
CLI::Option *identifier(CLI::App &command, const char *name, QString &target, const char *purpose);
/// DEVICE and RECORD.
void record(CLI::App &command, CommandLine &line);

/// The complaint about @p word, which the parser turns into the end of the program.
[[noreturn]] void refuse(const char *name, const QString &word, const char *expected);
/// What was typed as @p name. Other bytes than those of UTF-8 are refused, since another text would go out for them.
QString typed(const char *name, const std::string &word);

/// As text(); the word is read by @p read, and has to be what @p expected says.
template <typename Target, typename Value>
CLI::Option *value(CLI::App &command, const char *name, Target &target, std::optional<Value> (*read)(const QString &),
                   const char *purpose, const char *expected)
{
    const auto take = [&target, name, read, expected](const std::string &bytes) {
        const QString word = typed(name, bytes);
        const auto found = read(word);
        if (!found)
            refuse(name, word, expected);
        target = *found;
    };
    const bool isOption = name[0] == '-';
    return command.add_option_function<std::string>(name, take, purpose)->required(!isOption);
}

} // namespace korvectl::syntax

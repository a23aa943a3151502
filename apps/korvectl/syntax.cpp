#include "apps/korvectl/syntax.h"

namespace korvectl::syntax
{

namespace
{

std::optional<QString> any(const QString &word)
{
    return word;
}

std::optional<QString> notEmpty(const QString &word)
{
    return word.isEmpty() ? std::nullopt : std::optional(word);
}

} // namespace

CLI::App *add(CLI::App &parent, CommandLine &line, const char *name, const char *purpose, Command command)
{
    CLI::App *const added = parent.add_subcommand(name, purpose);
    added->callback([&line, command] { line.command = command; });
    return added;
}

CLI::App *addGroup(CLI::App &parent, const char *name, const char *purpose)
{
    CLI::App *const group = parent.add_subcommand(name, purpose);
    group->require_subcommand(1);
    return group;
}

CLI::Option *text(CLI::App &command, const char *name, QString &target, const char *purpose)
{
    return value(command, name, target, any, purpose, "")->type_name("");
}

CLI::Option *path(CLI::App &command, const char *name, QString &target, const char *purpose)
{
    return value(command, name, target, notEmpty, purpose, "a path: it is empty");
}

CLI::Option *identifier(CLI::App &command, const char *name, QString &target, const char *purpose)
{
    return value(command, name, target, parsedIdentifier, purpose,
                 "an identifier, which is not empty and has letters of Latin-1 alone")
        ->type_name("");
}

void record(CLI::App &command, CommandLine &line)
{
    identifier(command, "DEVICE", line.device, "The id of the device");
    identifier(command, "RECORD", line.record, "The id of the record");
}

void refuse(const char *name, const QString &word, const char *expected)
{
    throw CLI::ValidationError(name, QStringLiteral("\"%1\" is not %2").arg(word, QLatin1String(expected)).toStdString());
}

QString typed(const char *name, const std::string &word)
{
    const QString text = QString::fromStdString(word);
    if (text.toStdString() != word)
        refuse(name, text, "a text in UTF-8");
    return text;
}

} // namespace korvectl::syntax

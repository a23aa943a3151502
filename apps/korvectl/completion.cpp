#include "apps/korvectl/completion.h"

#include <algorithm>

namespace korvectl
{

namespace
{

/// The options of a command and of all that it stands below, since they may stand behind it.
std::vector<const CLI::Option *> optionsOf(const CLI::App *command)
{
    std::vector<const CLI::Option *> options;
    for (; command; command = command->get_parent())
        for (const CLI::Option *const option : command->get_options())
            options.push_back(option);
    return options;
}

std::string nameOf(const CLI::Option &parameter)
{
    return parameter.get_positional() ? parameter.get_name(true) : parameter.get_type_name();
}

/// The parser tells them in the form "{a,b}".
std::vector<std::string> choices(const CLI::Option &parameter)
{
    const std::string type = parameter.get_type_name();
    const auto begin = type.find('{');
    const auto end = type.find('}');
    if (begin == std::string::npos || end == std::string::npos || end < begin)
        return {};
    return CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

/// Follows a command line word by word.
class Walk
{
public:
    explicit Walk(const CLI::App &parser) : command(&parser) {}

    void pass(const std::string &word)
    {
        if (const CLI::Option *const option = std::exchange(awaiting, nullptr)) {
            keep(*option, word);
        } else if (word.rfind('-', 0) == 0) {
            awaiting = optionWithValue(word);
        } else if (const CLI::App *const found = subcommand(word)) {
            command = found;
            position = 0;
        } else {
            keepParameter(word);
            ++position;
        }
    }

    Completion at(const std::string &begun) const
    {
        Completion completion{{}, {}, subsystem, device, QString::fromStdString(begun)};
        const CLI::Option *const parameter = awaiting ? awaiting : nextParameter();
        std::vector<std::string> names;
        if (parameter) {
            completion.parameter = nameOf(*parameter);
            names = choices(*parameter);
        }
        if (begun.rfind('-', 0) == 0 && !awaiting)
            names = optionNames();
        else if (!awaiting && !parameter)
            names = commandNames();
        for (const std::string &name : names)
            if (name.rfind(begun, 0) == 0)
                completion.candidates << QString::fromStdString(name);
        return completion;
    }

private:
    void keep(const CLI::Option &option, const std::string &value)
    {
        if (option.get_name() == "--subsystem")
            subsystem = value;
    }
    void keepParameter(const std::string &value)
    {
        const CLI::Option *const parameter = nextParameter();
        if (parameter && nameOf(*parameter) == "DEVICE")
            device = value;
    }
    const CLI::Option *optionWithValue(const std::string &word) const
    {
        for (const CLI::Option *const option : optionsOf(command))
            if (option->check_name(word) && option->get_items_expected_max() > 0)
                return option;
        return nullptr;
    }
    const CLI::App *subcommand(const std::string &word) const
    {
        const auto commands = visibleCommands();
        const auto found = std::find_if(commands.begin(), commands.end(),
                                        [&](const CLI::App *candidate) { return candidate->get_name() == word; });
        return found == commands.end() ? nullptr : *found;
    }
    std::vector<const CLI::App *> visibleCommands() const
    {
        return command->get_subcommands([](const CLI::App *candidate) { return !candidate->get_group().empty(); });
    }
    const CLI::Option *nextParameter() const
    {
        const auto parameters =
            command->get_options([](const CLI::Option *option) { return option->get_positional(); });
        return position < parameters.size() ? parameters[position] : nullptr;
    }
    std::vector<std::string> optionNames() const
    {
        std::vector<std::string> names;
        for (const CLI::Option *const option : optionsOf(command))
            for (const std::string &name : option->get_lnames())
                if (const std::string text = "--" + name; std::count(names.begin(), names.end(), text) == 0)
                    names.push_back(text);
        return names;
    }
    std::vector<std::string> commandNames() const
    {
        std::vector<std::string> names;
        for (const CLI::App *const candidate : visibleCommands())
            names.push_back(candidate->get_name());
        return names;
    }

    const CLI::App *command;
    const CLI::Option *awaiting = nullptr; ///< has been named, and its value comes next
    std::size_t position = 0;              ///< of the next parameter
    std::string subsystem;
    std::string device;
};

bool isAssignment(const QString &word)
{
    return word.contains(u'=') && !word.startsWith(u'-');
}

} // namespace

Completion complete(const CLI::App &parser, const QStringList &words)
{
    Walk walk(parser);
    int first = 0;
    while (first + 1 < words.size() && isAssignment(words[first]))
        ++first; // NAME=VALUE in front of the program
    for (int position = first + 1; position + 1 < words.size(); ++position)
        walk.pass(words[position].toStdString());
    return walk.at(first + 1 < words.size() ? words.last().toStdString() : std::string());
}

} // namespace korvectl

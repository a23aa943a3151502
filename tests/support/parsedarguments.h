#pragma once

#include <optional>
#include <string>
#include <vector>

/// What arguments mean to a program, or the exit code that they lead to.
template <class CommandLine> struct ParsedArguments {
    ParsedArguments(const char *program, std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), program);
        std::vector<char *> pointers;
        for (std::string &argument : arguments)
            pointers.push_back(argument.data());
        line = CommandLine::parse(static_cast<int>(pointers.size()), pointers.data(), exitCode);
    }

    std::optional<CommandLine> line;
    int exitCode = -1;
};

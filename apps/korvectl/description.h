#pragma once

#include "apps/korvectl/commandline.h"

#include <CLI/CLI.hpp>

namespace korvectl
{

/// All that the command line can say: for parsing it, and for completing one that is being typed.
///
/// A parameter that takes a name of the installation is called so: DEVICE, RECORD, CHANNEL, PATH, SUBSYSTEM.
class Description
{
public:
    Description();
    Description(const Description &) = delete;

    /// @throws CLI::ParseError
    CommandLine parse(int argc, char **argv);
    CLI::App &parser() { return app; }

private:
    void describeOptions();
    void describeLists();
    void describeTree();
    void describeWatch(CLI::App &watch);
    void describeCompletion();
    CLI::App *add(CLI::App &parent, const char *name, const char *purpose, Command command);
    void addPath(CLI::App &command, bool isRequired);

    CLI::App app{"Asks the recorder manager of an installation.", "korvectl"};
    CommandLine line; // in the types of the parser, until they are converted:
    std::string shell{"bash"};
    std::string typedLine;
    std::string typedWord;
    double timeoutSeconds = 5;
    double watchSeconds = 0;
    int verbosity = 0;
};

} // namespace korvectl

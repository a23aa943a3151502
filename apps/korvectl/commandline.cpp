#include "apps/korvectl/commandline.h"

#include "apps/korvectl/description.h"
#include "apps/korvectl/failure.h"

namespace korvectl
{

std::optional<CommandLine> CommandLine::parse(int argc, char **argv, int &exitCode)
{
    Description description;
    try {
        return description.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        const bool isHelp = description.parser().exit(error) == 0;
        exitCode = static_cast<int>(isHelp ? ExitCode::Success : ExitCode::Usage);
        return {};
    }
}

} // namespace korvectl

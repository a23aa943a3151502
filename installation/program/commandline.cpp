#include "installation/program/commandline.h"

#include "programs/printable.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace installation
{

namespace
{

/// What the command line holds, in the types of its parser.
struct Raw {
    std::vector<std::string> roles;
    std::string config;
    std::string state;
    std::string device;
    std::vector<std::string> files;
    bool endsWithParent = false;
    std::string faults;
};

/// The last argument first, as the parser wants them.
std::vector<std::string> ownArguments(int argc, char **argv)
{
    std::vector<std::string> arguments;
    for (int position = 1; position < argc; ++position) {
        const std::string argument = argv[position];
        if (argument.starts_with("-ORB"))
            ++position; // with its value
        else
            arguments.insert(arguments.begin(), argument);
    }
    return arguments;
}

std::string complaintAboutNothing(const std::string &word)
{
    return word.empty() ? "it is empty" : std::string();
}

void describe(CLI::App &app, Raw &raw)
{
    app.failure_message([](const CLI::App *, const CLI::Error &error) {
        const QString complaint = programs::printable(QString::fromUtf8(error.what())); // it quotes what was typed
        return "korve-installation: " + complaint.toStdString() + "\nRun with --help for more information.\n";
    });
    app.add_option("--role", raw.roles, "Services to run in this process; all of a host by default")
        ->check(CLI::IsMember({"cco", "recorder", "manager"}));
    app.add_option("--config", raw.config, "INI file with the settings of this host")->check(CLI::ExistingFile);
    app.add_option("--state", raw.state,
                   "Folder for what outlives a restart; of several services, one folder each in it");
    app.add_flag("--end-with-parent", raw.endsWithParent, "End when the process that has started this one ends");
    app.add_option("--faults", raw.faults, "Fault script: what is to go wrong, and when")->check(CLI::ExistingFile);
    CLI::App *import =
        app.add_subcommand("import", "Have a recorder of this host take in WAV files and SigMF recordings");
    import->add_option("DEVICE", raw.device, "The id of the recorder")
        ->required()
        ->check(complaintAboutNothing);
    import->add_option("FILE", raw.files, "Files that the recorder can read")
        ->required()
        ->check(complaintAboutNothing);
    app.set_version_flag("--version", "korve-installation " KORVE_VERSION, "Print the version and end");
    app.footer(
        "Addresses: KORVE_ADDRESS or [host] address=, published as [host] publish=; the central object service is\n"
        "at KORVE_CCO or [host] cco=, else at port 8003 of this host.");
}

QList<Role> rolesNamed(const std::vector<std::string> &names)
{
    QList<Role> roles;
    for (const Role role : allRoles)
        if (names.empty() || std::find(names.begin(), names.end(), nameOf(role).toStdString()) != names.end())
            roles << role;
    return roles;
}

} // namespace

QString nameOf(Role role)
{
    switch (role) {
    case Role::CentralService:
        return QStringLiteral("cco");
    case Role::Recorder:
        return QStringLiteral("recorder");
    case Role::Manager:
        return QStringLiteral("manager");
    }
    return QString();
}

std::optional<CommandLine> CommandLine::parse(int argc, char **argv, int &exitCode)
{
    Raw raw;
    CLI::App app("The services of a recorder installation.", "korve-installation");
    describe(app, raw);
    try {
        app.parse(ownArguments(argc, argv));
    } catch (const CLI::ParseError &error) {
        constexpr int wrong = 1;
        exitCode = app.exit(error) == 0 ? 0 : wrong; // the parser has a number of its own for each mistake
        return {};
    }
    CommandLine line{rolesNamed(raw.roles), QString::fromStdString(raw.config), QString::fromStdString(raw.state),
                     raw.endsWithParent, QString::fromStdString(raw.faults)};
    if (!raw.files.empty()) {
        line.import = Import{QString::fromStdString(raw.device), {}};
        for (const std::string &file : raw.files)
            line.import->files << QByteArray::fromStdString(file);
    }
    return line;
}

} // namespace installation

#include "apps/korvectl/completecommand.h"

#include "apps/korvectl/channelstates.h"
#include "apps/korvectl/completion.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/managersession.h"
#include "apps/korvectl/mirroredpart.h"
#include "apps/korvectl/shellwords.h"
#include "apps/korvectl/treelisting.h"

#include <algorithm>

namespace korvectl
{

namespace
{

/// Readline quotes what it completes when it takes them for names of files, and shows the last part of a path alone.
constexpr char bashScript[] =
    R"bash(# Completes the command lines of korvectl; in ~/.bashrc: eval "$(korvectl completion bash)"
_korvectl() {
    local candidate
    COMPREPLY=()
    while IFS= read -r candidate; do
        COMPREPLY+=("$candidate")
        # Only what may need quotation marks, since a word that is also a folder here would get a slash.
        [[ $candidate == -* || $candidate != *[!a-z]* ]] || compopt -o filenames
        [[ $candidate != */ ]] || compopt -o nospace
    done < <("${1/#\~\//$HOME/}" complete -- "${COMP_LINE:0:COMP_POINT}" "$2" 2>/dev/null)
    # Where a quotation is open, it would be closed behind a node that is the only one.
    if [[ ${#COMPREPLY[@]} == 1 && ${COMPREPLY[0]} == */ && ${COMP_WORDS[COMP_CWORD]-} == [\"\']* ]]; then
        COMPREPLY+=("${COMPREPLY[0]} ")
    fi
}
complete -F _korvectl korvectl
)bash";

constexpr std::chrono::milliseconds patience{1000}; // nobody waits longer at a key

QStringList devices(const CentralService &service, const QString &subsystem)
{
    return ManagerSession(service, subsystem, patience).deviceIds();
}

QStringList records(const CentralService &service, const QString &subsystem, const QString &device)
{
    QStringList ids;
    const ManagerSession::Records found = ManagerSession(service, subsystem, patience).records(device);
    for (const KORVE_XML::KORVE_RecordData &record : found)
        ids << record.GetRecordID();
    return ids;
}

QStringList channels(const CentralService &service, const QString &subsystem)
{
    QStringList ids;
    const QVector<ChannelState> found = ChannelStates(service, subsystem, patience).channels();
    for (const ChannelState &state : found)
        ids << state.id;
    return ids;
}

/// The items of the node that the path @p begun is in.
QStringList paths(const CentralService &service, const QString &subsystem, const QString &begun)
{
    const VtConnectData server = treeServerOf(service, subsystem, Deadline(patience));
    const QString above = MirroredPart::withoutEmptyParts(begun.left(begun.lastIndexOf(u'/') + 1));
    const MirroredPart part(server, above, MirroredPart::Look::AtNode, patience);
    QStringList found;
    if (part.node())
        for (const values::TreeItem *const item : itemsBelow(*part.node(), false))
            found << item->GetPathName() + (item->isNode() ? QStringLiteral("/") : QString());
    return found;
}

bool isName(const std::string &parameter)
{
    return parameter == "DEVICE" || parameter == "RECORD" || parameter == "CHANNEL" || parameter == "PATH" ||
           parameter == "SUBSYSTEM";
}

QStringList namesFor(const Completion &completion)
{
    if (!isName(completion.parameter))
        return {};
    const QString subsystem = QString::fromStdString(completion.subsystem);
    try {
        const CentralService service(patience);
        if (completion.parameter == "DEVICE")
            return devices(service, subsystem);
        if (completion.parameter == "RECORD")
            return records(service, subsystem, QString::fromStdString(completion.device));
        if (completion.parameter == "CHANNEL")
            return channels(service, subsystem);
        if (completion.parameter == "PATH")
            return paths(service, subsystem, completion.begun);
        service.localSubsystem(Deadline(patience));
        return service.subsystems(patience);
    } catch (const Failure &) {
        return {};
    } catch (const CORBA::Exception &) {
        return {};
    }
}

} // namespace

ExitCode printCompletionScript(const CommandLine &)
{
    print(QString::fromUtf8(bashScript));
    return ExitCode::Success;
}

ExitCode completeLine(const CommandLine &line)
{
    Description description;
    Completion completion = complete(description.parser(), shellWords(line.typedLine));
    if (!completion.begun.startsWith(u'-'))
        completion.candidates += namesFor(completion);
    // The shell replaces only the end of a word that has one of its word breaks in it, such as a colon.
    const int kept = completion.begun.size() - unquoted(line.typedWord).size();
    for (const QString &candidate : std::as_const(completion.candidates))
        if (candidate.startsWith(completion.begun) && !candidate.contains(u'\n'))
            print(candidate.mid(std::max(0, kept)) + u'\n');
    return ExitCode::Success;
}

} // namespace korvectl

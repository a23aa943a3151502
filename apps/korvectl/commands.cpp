#include "apps/korvectl/commands.h"

#include "apps/korvectl/completecommand.h"
#include "apps/korvectl/devicescommand.h"
#include "apps/korvectl/doctorcommand.h"
#include "apps/korvectl/errorscommand.h"
#include "apps/korvectl/exportcommand.h"
#include "apps/korvectl/notecommands.h"
#include "apps/korvectl/recordcommands.h"
#include "apps/korvectl/recordingcommands.h"
#include "apps/korvectl/recordscommand.h"
#include "apps/korvectl/replaycommands.h"
#include "apps/korvectl/spectrumcommand.h"
#include "apps/korvectl/timecommands.h"
#include "apps/korvectl/treecommands.h"
#include "apps/korvectl/watchcommand.h"

#include <map>

namespace korvectl
{

ExitCode run(const CommandLine &line)
{
    static const std::map<Command, ExitCode (*)(const CommandLine &)> commands{
        {Command::Devices, listDevices},
        {Command::Records, listRecords},
        {Command::RecordShow, showRecord},
        {Command::RecordComment, setComment},
        {Command::RecordDeletable, setDeletable},
        {Command::RecordCopy, copyRecord},
        {Command::RecordDelete, deleteRecord},
        {Command::HistoryList, listHistory},
        {Command::HistoryAdd, addToHistory},
        {Command::HistoryRemove, removeFromHistory},
        {Command::BookmarksList, listBookmarks},
        {Command::BookmarksAdd, addBookmark},
        {Command::BookmarksRemove, removeBookmark},
        {Command::RecordStart, startRecording},
        {Command::RecordStop, stopRecording},
        {Command::ReplayStart, startReplay},
        {Command::ReplayPause, pauseReplay},
        {Command::ReplayContinue, continueReplay},
        {Command::ReplayStop, stopReplay},
        {Command::ReplayStatus, showReplays},
        {Command::Spectrum, showSpectrum},
        {Command::Export, exportRecord},
        {Command::TimeGet, getTime},
        {Command::TimeSet, setTime},
        {Command::Watch, watchStates},
        {Command::Errors, explainError},
        {Command::TreeList, listTree},
        {Command::TreeGet, getFromTree},
        {Command::TreeWatch, watchTree},
        {Command::Doctor, examine},
        {Command::Completion, printCompletionScript},
        {Command::Complete, completeLine},
    };
    return commands.at(line.command)(line);
}

} // namespace korvectl

#include "tests/faults/branches.h"

#include <algorithm>

namespace
{

constexpr const char *administration[] = {
    "SaveBookmarksToKorve", "DeleteBookmarksFromKorve",    "addBookmarkEntries", "RequestRecordDataDetail",
    "SaveHistoryEntryToKorve", "DeleteHistoryEntryFromKorve", "addHistory",         "removeHistoryEntry",
    "CopyRecord",              "copyRecord",                  "SetRecordComment",   "SetRecordDeletableFlag",
    "getRecord",               "overviewSpectrumStreamed",    "GetDeviceTime",      "SetDeviceTime"};

/// Each with the name that its traces have.
constexpr std::pair<const char *, const char *> replays[] = {{"StartReplay", "StartReplay"},
                                                             {"StartReplayReceivers", "StartReplay"},
                                                             {"PauseReplay", "PauseReplay"},
                                                             {"ContinueReplay", "ContinueReplay"},
                                                             {"StopReplay", "StopReplay"}};

constexpr const char *refusals[] = {"Invalid Device ID - ", "Invalid Address - ", "Invalid Record ID - ",
                                    "Request Failed - "};

const std::string anyNumber = "*";
const std::string noInterface = "KorveGuiToServerCorbaHandler::GetReplayInterface(): unknown exception.";
const std::string noAdministration = "KorveGuiToServerCorbaHandler::GetKorveAdminInterface(): unknown exception.";
const std::string orbsException = "CORBA System Exception";

void addAdministration(std::vector<Branch> &branches)
{
    for (const std::string name : administration) {
        branches.insert(branches.end(), {{name, "101", ""},
                                         {name, "5", "error calling getKorveAdminInterface"},
                                         {name, "210", name + " for "},
                                         {name, "211", name + " for "},
                                         {name, anyNumber, ""}});
    }
    branches.push_back({"SetRecordComment", "101", noAdministration});
    branches.push_back({"reconnectedAddHistory", "5", noAdministration});
    branches.push_back({"getRecord", "501", "getRecord for "}); // the only exception that is declared
}

void addReplays(std::vector<Branch> &branches)
{
    for (const auto &[command, name] : replays) {
        branches.insert(branches.end(), {{command + std::string("OfNobody"), "101", ""},
                                         {command, "101", noInterface},
                                         {command, "210", name + std::string(" for ")},
                                         {command, "211", name + std::string(" for ")},
                                         {command, anyNumber, ""}});
    }
}

/// What the manager's main interface refuses, and that it cannot be called. @p inTraces is how traces call @p command.
void addRefusals(const std::string &command, const std::string &outcome, const std::string &inTraces,
                 std::vector<Branch> &branches)
{
    for (const char *const refusal : refusals)
        branches.push_back({command, outcome, inTraces + ": " + refusal});
    branches.push_back({command, outcome, orbsException});
}

void addArchive(std::vector<Branch> &branches)
{
    for (const std::string name : {"restorePelinFilegroup", "pelinConnectionParameter"}) {
        branches.push_back({name, "false", ""});
        branches.push_back({name, "false", "error calling getKorveInterface"});
        addRefusals(name, "false", name, branches);
    }
}

void addExports(std::vector<Branch> &branches)
{
    const std::string anyNumber = "*";
const std::string noInterface = "Error calling GetKorveAdminInterface";
    branches.push_back({"deviceID", "", ""});
    addRefusals("deviceID", "", "deviceID(192.0.2.1)", branches);
    branches.push_back({"cancelExport", "false", "Error calling cancelExport while not connected"});
    addRefusals("cancelExport", "false", "cancelExport(E1)", branches);
    branches.insert(branches.end(), {{"exportRecord", "false", "Error calling exportRecord while not connected"},
                                     {"exportRecord", "false", "CORBA User Exception"},
                                     {"exportRecord", "false", orbsException},
                                     {"deleteRecord", "false", "Error calling GetKorveAdminInterface"},
                                     {"deleteRecord", "false", orbsException},
                                     {"deleteRecord", "false", ""},
                                     {"deleteRecord", "true", ""},
                                     {"recordDataFormat", "not connected", ""},
                                     {"recordDataFormat", "Unable to access CORBA Interface.",
                                      "Error calling GetKorveAdminInterface"},
                                     {"recordDataFormat", "The device is not available", ""},
                                     {"recordDataFormat", "The record is not available", ""},
                                     {"recordDataFormat", "The record is not available.", ""},
                                     {"recordDataFormat", "unexpected error ID 7000", ""},
                                     {"recordDataFormat", "CORBA system exception on retrieving record information.",
                                      "recordDataFormat for "}});
}

bool isOfHandler(const std::string &outcome)
{
    return outcome == "5" || outcome == "101";
}

} // namespace

bool Branch::isTakenBy(const ScriptRow &row) const
{
    const bool hasOutcome = row.outcome == outcome || (outcome == anyNumber && !isOfHandler(row.outcome));
    const bool hasTrace = trace.empty() ? row.traces.empty()
                                        : std::any_of(row.traces.begin(), row.traces.end(), [&](const std::string &line) {
                                              return line.starts_with(trace);
                                          });
    return row.command == command && hasOutcome && hasTrace;
}

std::string told(const Branch &branch)
{
    return branch.command + ' ' + branch.outcome + ' ' + branch.trace;
}

std::vector<Branch> allBranches()
{
    std::vector<Branch> branches;
    addAdministration(branches);
    addReplays(branches);
    addArchive(branches);
    addExports(branches);
    return branches;
}

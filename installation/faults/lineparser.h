#pragma once

#include "installation/faults/faultscript.h"
#include "installation/faults/scriptwords.h"

namespace installation::faults
{

/// Reads one line of a fault script.  Errors: std::invalid_argument with the reason.
class LineParser
{
public:
    /// Puts what the line says into @p script. @p place names the line.
    LineParser(std::string_view line, const std::string &place, FaultScript &script);

    void parse();

private:
    void parseProcess();
    void parseDisk();
    int takeDiskError();
    void parseCall();
    std::string takeRoleOfCall();
    std::string takeOperation(const std::string &role);
    CallAction takeAction(std::string &role, const std::string &operation);
    CallAction takeException();
    CallAction takeKill();
    unsigned takeKind(const UserException &exception);
    /// Only the role whose operation has such an answer is meant.
    Answer takeAnswer(std::string &role, const std::string &operation);
    TimeWindow takeWindow();
    unsigned takeTimes();

    bool isAtEnd() const { return position == words.size(); }
    /// Takes the next word if it is this one.
    bool takeIf(std::string_view word);
    void require(std::string_view word);
    /// The next word, which is not quoted; @p meaning names what is missing otherwise.
    std::string take(const char *meaning);
    std::chrono::milliseconds takeTime();
    unsigned takeNumber(const char *meaning);

    const std::vector<ScriptWord> words;
    const std::string origin;
    FaultScript &script;
    std::size_t position = 0;
};

} // namespace installation::faults

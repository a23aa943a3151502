#pragma once

#include <QString>

#include <string>
#include <vector>

/// What a script says that a client gets of one of its lines.
struct ScriptRow {
    std::string line;    ///< of the script; empty when nothing is to strike
    std::string command; ///< what the client does; see Client
    std::string outcome; ///< what that answers
    std::string flow;    ///< in which the outcome is worded; empty when it is no error number
    std::vector<std::string> traces;
};

/// The rows of a script in their order: lines that end in
/// `# COMMAND -> OUTCOME [in FLOW] ["TRACE"]...`, or consist of `#: ` and the same. An outcome that is no single word
/// stands in quotation marks.
/// @throws std::runtime_error for a fault without a row, and when there is no such script.
std::vector<ScriptRow> rowsOf(const std::string &script);

/// The folder of the scripts.
QString scriptPath(const std::string &script);

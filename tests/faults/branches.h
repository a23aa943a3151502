#pragma once

#include "tests/faults/scripttable.h"

/// A way on which a handler of commands ends one without success, or hands on what it was answered.
///
/// Not among them are those that no service can bring about: what a remote call cannot raise, since its contract does
/// not declare it. Tests of the handlers alone have these.
struct Branch {
    std::string command; ///< see Client
    std::string outcome; ///< "*" is any number that is not the handler's own
    std::string trace;   ///< a line begins so; empty when nothing is traced

    bool isTakenBy(const ScriptRow &row) const;
};

/// For messages: "COMMAND OUTCOME TRACE".
std::string told(const Branch &branch);

/// Of all three handlers.
std::vector<Branch> allBranches();

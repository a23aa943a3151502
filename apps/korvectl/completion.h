#pragma once

#include "apps/korvectl/description.h"

#include <QStringList>

namespace korvectl
{

/// What may stand at the end of a command line that is being typed.
struct Completion {
    QStringList candidates; ///< that begin with what is there
    std::string parameter;  ///< what is expected there, by the name in the help; empty: nothing
    std::string subsystem;  ///< that the line names
    std::string device;     ///< as well
    QString begun;          ///< what is there of the last word
};

/// @p words begins with the name of the program.
Completion complete(const CLI::App &parser, const QStringList &words);

} // namespace korvectl

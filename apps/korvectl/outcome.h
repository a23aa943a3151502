#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

#include "korvebase/traceerror.h"

#include <QStringList>

namespace korvectl
{

using Flow = KorveManagement::TraceError::MethodCallType;

/// What a command handler answered.
struct Answer {
    unsigned long number = 0;
    bool isUnknown = false; ///< it may have been done although it failed
    QString reason{};       ///< says more than the sentence of the number, and stands in its place; empty: none
};

/// What was to be done, in the words that tell of its failure.
struct Deed {
    Flow flow;
    QString words;  ///< such as "setting the comment of record R1 on REC1"
    QString about;  ///< what the sentence of the failure speaks of
    QString check{}; ///< the command that shows whether it was done; empty for what only asks
};

/// "Id: 10012 : ", and the sentence of the flow, filled with @p about; where the flow does not know the number, where
/// it comes from. Never empty.
QString sentenceFor(unsigned long number, Flow flow, const QString &about);

/// Whether that number is a matter of reaching somebody, of a refusal, or of something else.
ExitCode exitCodeOf(unsigned long number);
/// The words for a number other than 0. What may have been done is never told as failed.
Failure failureOf(const Answer &answer, const Deed &deed);
/// @throws Failure unless the number is 0.
void require(const Answer &answer, const Deed &deed);

/// The command line of this program with these words, as a shell takes it, for the same subsystem.
QString commandText(const CommandLine &line, const QStringList &words);

} // namespace korvectl

#pragma once

#include "korvebase/traceerror.h"

#include <QVector>

/// What is known of error numbers: their sentences by work flow, and who answers them.
namespace korvectl
{

using Flow = KorveManagement::TraceError::MethodCallType;

struct NamedFlow {
    Flow flow;
    const char *name; ///< as the command line takes it
};

/// All, in their order.
const QVector<NamedFlow> &allFlows();
/// @p name has to be one of them.
Flow flowNamed(const QString &name);

/// Whether the flow has a sentence for just this number, rather than one for all that it does not know.
bool isKnown(unsigned long number, Flow flow);
/// "Id: 10012 : ", and the sentence of the flow, filled with @p about; where the flow does not know the number, where
/// it comes from. Never empty.
QString sentenceFor(unsigned long number, Flow flow, const QString &about);

/// "Id: 210 : ", and where it comes from. Never empty.
QString originSentence(unsigned long number);
/// Whose number it is, in a few words: the kind of an exception by its name, or what answers it. Empty for a number
/// that nothing answers.
QString originOf(unsigned long number);

} // namespace korvectl

#include "apps/korvectl/outcome.h"

#include "apps/korvectl/shellwords.h"

#include "common/errornumber.h"
#include "connectionmanagement/errorcatalogue.h"

namespace korvectl
{

namespace
{

using KorveManagement::ErrorCatalogue;

/// "Id: 210 : ", and where it comes from. Never empty.
QString originSentence(unsigned long number)
{
    const QString origin = ErrorCatalogue::origin(number);
    return QStringLiteral("Id: %1 : %2").arg(
        QString::number(number), origin.isEmpty() ? QStringLiteral("a number that nothing is known of") : origin);
}

QString asSentence(QString words)
{
    words[0] = words[0].toUpper();
    return words;
}

QString withPeriod(const QString &text)
{
    const QString trimmed = text.trimmed();
    return trimmed.endsWith(u'.') || trimmed.endsWith(u'!') ? trimmed : trimmed + u'.';
}

} // namespace

QString sentenceFor(unsigned long number, Flow flow, const QString &about)
{
    return ErrorCatalogue::isKnown(number, flow) ? ErrorCatalogue::sentence(number, flow, about)
                                                 : originSentence(number);
}

ExitCode exitCodeOf(unsigned long number)
{
    namespace known = korve::errornumber;
    constexpr unsigned long deviceNotReachable = 502;
    switch (number) {
    case known::success:
        return ExitCode::Success;
    case known::noInterface:
    case known::serverNotAvailable:
    case known::transient:
    case deviceNotReachable:
        return ExitCode::NotReachable;
    case known::systemException:
    case known::unknownUserException:
    case known::unspecified:
        return ExitCode::Failed;
    default:
        return ExitCode::Refused;
    }
}

Failure failureOf(const Answer &answer, const Deed &deed)
{
    if (answer.isUnknown && !deed.check.isEmpty())
        return Failure(ExitCode::Unknown,
                       QStringLiteral("The outcome of %1 is unknown: the connection was lost after it was sent, or the "
                                      "answer did not come in time (%2). Check it with: %3")
                           .arg(deed.words, originSentence(answer.number), deed.check));
    const QString sentence = answer.reason.isEmpty()
                                 ? sentenceFor(answer.number, deed.flow, deed.about)
                                 : QStringLiteral("Id: %1 : %2").arg(QString::number(answer.number), answer.reason);
    return Failure(exitCodeOf(answer.number),
                   QStringLiteral("%1 failed: %2").arg(asSentence(deed.words), withPeriod(sentence)));
}

void require(const Answer &answer, const Deed &deed)
{
    if (answer.number != korve::errornumber::success)
        throw failureOf(answer, deed);
}

QString commandText(const CommandLine &line, const QStringList &words)
{
    QStringList all{QStringLiteral("korvectl")};
    if (!line.subsystem.isEmpty())
        all << QStringLiteral("--subsystem") << line.subsystem;
    all += words;
    for (QString &word : all)
        word = quotedForShell(word);
    return all.join(u' ');
}

} // namespace korvectl

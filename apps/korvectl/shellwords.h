#pragma once

#include <QStringList>

namespace korvectl
{

/// The words of a command line as a shell has them typed, without their quotation marks and backslashes. The last one
/// is that at the end, empty behind a blank; a quotation that is not closed yet ends there.
QStringList shellWords(const QString &line);

/// One word, in which a blank means nothing.
QString unquoted(const QString &word);

/// @p text as one word of a shell: as it is, where it has only plain letters, else in quotation marks.
QString quotedForShell(const QString &text);

} // namespace korvectl

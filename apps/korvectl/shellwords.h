#pragma once

#include <QStringList>

namespace korvectl
{

/// The words of a command line as a shell has them typed, without their quotation marks and backslashes. The last one
/// is that at the end, empty behind a blank; a quotation that is not closed yet ends there.
QStringList shellWords(const QString &line);

/// One word, in which a blank means nothing.
QString unquoted(const QString &word);

} // namespace korvectl

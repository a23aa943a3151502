#pragma once

#include <QString>

namespace korvectl
{

/// How many columns of a terminal @p text takes: two for a wide letter, none for what is drawn upon the one before it.
int displayWidth(const QString &text);
/// @p text if it takes no more than @p width columns; else its beginning, with three dots for the rest.
QString cutToWidth(const QString &text, int width);

} // namespace korvectl

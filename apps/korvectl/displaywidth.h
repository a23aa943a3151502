#pragma once

#include <QString>

namespace korvectl
{

/// How many columns of a terminal @p text takes: two for a wide letter, none for what is drawn upon the one before it.
int displayWidth(const QString &text);

} // namespace korvectl

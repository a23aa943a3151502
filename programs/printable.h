#pragma once

#include <QString>

namespace programs
{

/// @p text, which may be of another machine, with a question mark for what would move the cursor of a terminal.
QString printable(QString text);

} // namespace programs

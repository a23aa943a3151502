#pragma once

#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"

/// `korvectl record history ...` and `korvectl record bookmarks ...`. All throw Failure.
namespace korvectl
{

ExitCode listHistory(const CommandLine &line);
ExitCode addToHistory(const CommandLine &line);
ExitCode removeFromHistory(const CommandLine &line);

ExitCode listBookmarks(const CommandLine &line);
ExitCode addBookmark(const CommandLine &line);
ExitCode removeBookmark(const CommandLine &line);

} // namespace korvectl

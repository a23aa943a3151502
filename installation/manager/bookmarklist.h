#pragma once

#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <chrono>

namespace installation
{

// Many bookmarks of one record, changed by one call and with one file written at a recorder that can do that
// (KORVE_INSTALLATION::IF_BookmarkControl), and one by one at any other. All that can be done is done.
// Errors: what the recorder raises: `exKorve` when nothing has been changed, `exPartlyDone` when some bookmarks have.
// Blocks, each call at most for the limit.

void addBookmarksAt(TQ_KORVE::IF_Control_ptr recorder, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks,
                    std::chrono::milliseconds limit);
void removeBookmarksAt(TQ_KORVE::IF_Control_ptr recorder, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks,
                       std::chrono::milliseconds limit);

} // namespace installation

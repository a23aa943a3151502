#include "installation/manager/bookmarklist.h"

#include "installation/contracts/bookmarks.hh"
#include "installation/cco/orbaccess.h"
#include "installation/manager/recorddescription.h"

#include <optional>

namespace installation
{

namespace
{

using KORVE_INSTALLATION::IF_BookmarkControl;

TQ_KORVE::seqBookmarks toDeviceBookmarks(const TQ_KRV::seqBookmarks &bookmarks)
{
    TQ_KORVE::seqBookmarks converted;
    converted.length(bookmarks.length());
    for (CORBA::ULong position = 0; position < bookmarks.length(); ++position) {
        converted[position].timestamp = bookmarks[position].timestamp;
        converted[position].bookmark = toDeviceText(bookmarks[position].bookmark);
    }
    return converted;
}

/// False for a recorder that knows only the device's own contract.
template <typename Change>
bool isDoneAtOnce(TQ_KORVE::IF_Control_ptr recorder, std::chrono::milliseconds limit, Change change)
{
    const KORVE_INSTALLATION::IF_BookmarkControl_var own = withCallLimit<IF_BookmarkControl>(recorder, limit);
    try {
        change(own.in());
        return true;
    } catch (const CORBA::BAD_OPERATION &) {
        return false;
    }
}

template <typename Change> void doneOneByOne(const TQ_KORVE::seqBookmarks &bookmarks, Change change)
{
    std::optional<TQ_KORVE::exKorve> refusal;
    bool isAnyDone = false;
    for (CORBA::ULong position = 0; position < bookmarks.length(); ++position) {
        try {
            change(bookmarks[position]);
            isAnyDone = true;
        } catch (const TQ_KORVE::exKorve &one) {
            refusal = refusal.value_or(one);
        } catch (const CORBA::SystemException &) {
            if (!isAnyDone)
                throw;
            throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE);
        }
    }
    if (refusal && isAnyDone)
        throw KORVE_INSTALLATION::exPartlyDone(refusal->kind, refusal->text);
    if (refusal)
        throw *refusal;
}

} // namespace

void addBookmarksAt(TQ_KORVE::IF_Control_ptr recorder, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks,
                    std::chrono::milliseconds limit)
{
    const TQ_KORVE::seqBookmarks all = toDeviceBookmarks(bookmarks);
    if (!isDoneAtOnce(recorder, limit, [&](auto own) { own->addBookmarks(recordId, all); }))
        doneOneByOne(all, [&](const auto &one) { recorder->addBookmark(recordId, one.timestamp, one.bookmark); });
}

void removeBookmarksAt(TQ_KORVE::IF_Control_ptr recorder, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks,
                       std::chrono::milliseconds limit)
{
    const TQ_KORVE::seqBookmarks all = toDeviceBookmarks(bookmarks);
    if (!isDoneAtOnce(recorder, limit, [&](auto own) { own->removeBookmarks(recordId, all); }))
        doneOneByOne(all, [&](const auto &one) { recorder->removeBookmark(recordId, one.timestamp); });
}

} // namespace installation

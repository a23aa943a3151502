#pragma once

#include "idl/korvemanager.hh"

#include <initializer_list>

/// One bookmark at each of these times.
inline TQ_KRV::seqBookmarks bookmarksAt(std::initializer_list<CORBA::ULongLong> timestamps)
{
    TQ_KRV::seqBookmarks bookmarks;
    for (const CORBA::ULongLong timestamp : timestamps) {
        bookmarks.length(bookmarks.length() + 1);
        bookmarks[bookmarks.length() - 1].timestamp = timestamp;
        bookmarks[bookmarks.length() - 1].bookmark = L"mark";
    }
    return bookmarks;
}

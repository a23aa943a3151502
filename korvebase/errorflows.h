#pragma once

#include "korvebase/errortext.h"

#include <span>

namespace korve
{

/// What error numbers mean in one work flow.
struct ErrorFlow {
    std::span<const ErrorText> own;
    std::span<const ErrorText> shared; ///< with another flow
    const char *other;                 ///< of any other number; null where that has no sentence of this kind

    constexpr const char *sentence(unsigned long id) const
    {
        for (const auto table : {own, shared}) {
            if (const char *const text = findText(table, id))
                return text;
        }
        return other;
    }
    /// Whether there is a sentence for just this number.
    constexpr bool knows(unsigned long id) const { return findText(own, id) || findText(shared, id); }
};

} // namespace korve

namespace korve::errorflow
{

extern const ErrorFlow admin;
extern const ErrorFlow setup;
extern const ErrorFlow addBookmark;
extern const ErrorFlow getBookmark;
extern const ErrorFlow removeBookmark;
extern const ErrorFlow channel;
extern const ErrorFlow startReplay;
extern const ErrorFlow controlReplay;
extern const ErrorFlow startRecording;
extern const ErrorFlow stopRecording;
extern const ErrorFlow history;
extern const ErrorFlow toolbarActions; // these two are in toolbarhelper.cpp
extern const ErrorFlow toolbarRecords;

} // namespace korve::errorflow

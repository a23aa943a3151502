#include "korvebase/traceerror.h"

#include <gtest/gtest.h>

using KorveManagement::TraceError;
using Flow = TraceError::MethodCallType;

namespace
{
using TableFunction = QString (*)(unsigned long, const Flow &, const QString &);

struct Bookmark {
    friend TableFunction opened(Bookmark);
};
struct Firmware {
    friend TableFunction opened(Firmware);
};

/// An explicit instantiation may name what is private: the way to sentences that toText() never asks for.
template <typename Table, TableFunction function> struct Opened {
    friend TableFunction opened(Table) { return function; }
};
template struct Opened<Bookmark, &TraceError::getBookmarkText>;
template struct Opened<Firmware, &TraceError::getFirmwareVersion>;

std::string worded(TableFunction table, Flow flow)
{
    return table(210, flow, QStringLiteral("x")).toStdString();
}

TEST(ErrorTextOfAnotherFlow, IsTheLastOfTheTable)
{
    for (const Flow other : {Flow::Admin, Flow::History, static_cast<Flow>(12)}) {
        EXPECT_EQ(worded(opened(Bookmark()), other), "Id: 210 : Could not process bookmark request.");
        EXPECT_EQ(worded(opened(Firmware()), other), "Id: 210 : Could not firmware version request for device x, 210.");
    }
    for (const Flow own : {Flow::AddBookmark, Flow::GetBookmark, Flow::RemoveBookmark})
        EXPECT_EQ(worded(opened(Bookmark()), own), TraceError::toText(210, own, QString()).toStdString());
}
} // namespace

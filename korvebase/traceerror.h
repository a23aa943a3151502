#pragma once

#include "korvebase/korvebase_export.h"

#include <QString>

namespace KorveManagement
{

/// Turns the error number of a command into the sentence that a person reads, in the application's language.
///
/// Thread: any.
class KORVEBASE_EXPORT TraceError
{
public:
    /// The work flow in which a number came up; the same number has another meaning in another.
    enum MethodCallType : int {
        Admin,
        Setup,
        FirmwareVersion,
        AddBookmark,
        GetBookmark,
        RemoveBookmark,
        Channel,
        StartReplay,
        ControlReplay,
        StartRecording,
        StopRecording,
        History,
    };

    /// "Id: 3 : " and the sentence; @p text stands where the sentence speaks of something particular, such as a record.
    /// Empty for a @p type that is none of the above.
    static QString toText(unsigned long errorId, const MethodCallType &type, const QString &text);

private:
    static QString getAdminText(unsigned long errorId, const MethodCallType &type, const QString &text);
    static QString getSetupText(unsigned long errorId, const MethodCallType &type, const QString &text);
    static QString getFirmwareVersion(unsigned long errorId, const MethodCallType &type, const QString &text);
    static QString getBookmarkText(unsigned long errorId, const MethodCallType &type, const QString &text);
    static QString getChannelText(unsigned long errorId, const MethodCallType &type, const QString &text);
    static QString getReplayingText(unsigned long errorId, const MethodCallType &type, const QString &text);
    static QString getRecordingText(unsigned long errorId, const MethodCallType &type);
    static QString getHistoryText(unsigned long errorId, const MethodCallType &type, const QString &text);
};

} // namespace KorveManagement

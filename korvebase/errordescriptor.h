#pragma once

#include "korvebase/korvebase_export.h"

#include <QList>
#include <QMutex>
#include <QString>

/// Writes and reads the answers to commands that were sent through the value tree: values "ErrorCode" that hold
/// "number@classifier@code@message", or several such strings joined by "||".
///
/// Thread: any; values change on the main thread, later, also when the caller is on it. The object need not live until
/// then.  Errors: traced; a value that is not in the tree is left out.
class KORVEBASE_EXPORT ErrorDescriptor
{
public:
    enum ErrorClassifier : int {
        Message,
        Warning,
        Error,
        Exception,
        NoValue,
        Information,
    };

    struct StruReturnErrorCode {
        bool valid = false;
        ErrorClassifier classifier = NoValue;
        QString errorCode{};
        QString message{};
    };

    ErrorDescriptor() = default;
    /// The commands and channels are those below @p rootPath.
    explicit ErrorDescriptor(const QString &rootPath);

    /// No two strings of a process are equal: each has the next number in front.
    QString ConstructErrorString(const ErrorClassifier &classifier, const QString &errorCode, const QString &message);

    /// Answers the command.
    void WriteCommandResponse(const ErrorClassifier &classifier, const QString &errorCode, const QString &message);
    /// Answers the command, then its channel.
    void WriteCommandResponse(const ErrorClassifier &classifier, const QString &channelId, const QString &errorCode,
                              const QString &message);
    void WriteCommandResponseToTree(const ErrorClassifier &classifier, const QString &path, const QString &errorCode,
                                    const QString &message);
    /// Writes @p text to the paths that are not empty, at once. Observers see it even if it is what stands there.
    /// Thread: main.
    void WriteCommandResponseInternal(const QString &text, const QString &path1, const QString &path2);

    /// Reads one string, regardless of its number; a message ends at an "@". What is corrupt is traced, and not valid.
    StruReturnErrorCode GetErrorCode(const QString &text);
    /// The caller owns it.
    StruReturnErrorCode *GetErrorCodePtr(const QString &text);

    /// The word for @p classifier; empty for one that there is not.
    static QString Image(const ErrorClassifier &classifier);
    /// NoValue for any other word.
    static ErrorClassifier ImageToValue(const QString &image);
    /// The strings that a value holds; at least one.
    static QList<QString> Split(const QString &text);

private:
    QMutex mutex{QMutex::Recursive}; // guards lastError
    QString lastError;
    QString rootPath;
};

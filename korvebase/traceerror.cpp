#include "korvebase/traceerror.h"

#include "korvebase/errorflows.h"

#include <QObject>

namespace KorveManagement
{

namespace
{

namespace flow = korve::errorflow;

QString prefix(unsigned long errorId)
{
    return QStringLiteral("Id: %1 : ").arg(errorId);
}

/// The translation of @p sentence, its mark filled. QString::arg would warn of a sentence that has none.
QString filled(const char *sentence, const QString &text)
{
    const QString translated = QObject::tr(sentence);
    return translated.contains(QLatin1String("%1")) ? translated.arg(text) : translated;
}

QString worded(unsigned long errorId, const korve::ErrorFlow &texts, const QString &text)
{
    return prefix(errorId) + filled(texts.sentence(errorId), text);
}

} // namespace

QString TraceError::toText(unsigned long errorId, const MethodCallType &type, const QString &text)
{
    switch (type) {
    case Admin:
        return getAdminText(errorId, type, text);
    case Setup:
        return getSetupText(errorId, type, text);
    case FirmwareVersion:
        return getFirmwareVersion(errorId, type, text);
    case AddBookmark:
    case GetBookmark:
    case RemoveBookmark:
        return getBookmarkText(errorId, type, text);
    case Channel:
        return getChannelText(errorId, type, text);
    case StartReplay:
    case ControlReplay:
        return getReplayingText(errorId, type, text);
    case StartRecording:
    case StopRecording:
        return getRecordingText(errorId, type);
    case History:
        return getHistoryText(errorId, type, text);
    }
    return {};
}

QString TraceError::getAdminText(unsigned long errorId, const MethodCallType &, const QString &text)
{
    return worded(errorId, flow::admin, text);
}

QString TraceError::getSetupText(unsigned long errorId, const MethodCallType &, const QString &text)
{
    return worded(errorId, flow::setup, text);
}

QString TraceError::getFirmwareVersion(unsigned long errorId, const MethodCallType &type, const QString &text)
{
    const QString sentence =
        type == FirmwareVersion
            ? QObject::tr("Could not retrieve the Firmware Version from the Korve device %1 with errorId %2. Cannot "
                          "determine interface of device so disconnecting.")
            : QObject::tr("Could not firmware version request for device %1, %2.");
    return prefix(errorId) + sentence.arg(text, QString::number(errorId));
}

QString TraceError::getBookmarkText(unsigned long errorId, const MethodCallType &type, const QString &text)
{
    switch (type) {
    case AddBookmark:
        return worded(errorId, flow::addBookmark, text);
    case GetBookmark:
        return worded(errorId, flow::getBookmark, text);
    case RemoveBookmark:
        return worded(errorId, flow::removeBookmark, text);
    default:
        return prefix(errorId) + QObject::tr("Could not process bookmark request.");
    }
}

QString TraceError::getChannelText(unsigned long errorId, const MethodCallType &, const QString &text)
{
    return worded(errorId, flow::channel, text);
}

QString TraceError::getReplayingText(unsigned long errorId, const MethodCallType &type, const QString &text)
{
    return worded(errorId, type == StartReplay ? flow::startReplay : flow::controlReplay, text);
}

QString TraceError::getRecordingText(unsigned long errorId, const MethodCallType &type)
{
    const korve::ErrorFlow &texts = type == StartRecording ? flow::startRecording : flow::stopRecording;
    return prefix(errorId) + QObject::tr(texts.sentence(errorId)); // contract: a mark stays as it is
}

QString TraceError::getHistoryText(unsigned long errorId, const MethodCallType &, const QString &text)
{
    const char *const sentence = flow::history.sentence(errorId);
    // contract: the only one with nothing in front; it reads "Error ID Id: 6 :  not found"
    return sentence ? prefix(errorId) + filled(sentence, text)
                    : QObject::tr("Error ID %1 not found").arg(prefix(errorId));
}

} // namespace KorveManagement

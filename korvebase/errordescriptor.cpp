#include "korvebase/errordescriptor.h"

#include "korvebase/valuenames.h"
#include "korvebase/valuetreepaths.h"

#include "appruntime/threadswitchingadministration.h"
#include "coresupport/trace.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>

namespace
{

using ThreadingHelper::RunInMainThreadEvent;
using ThreadingHelper::ThreadSwitchingAdministration;

constexpr char sourceName[] = "korvebase/errordescriptor";

constexpr int classifierCount = ErrorDescriptor::Information + 1;

const std::array<QString, classifierCount> &images()
{
    static const std::array<QString, classifierCount> texts{QStringLiteral("Message"), QStringLiteral("Warning"),
                                                            QStringLiteral("Error"),   QStringLiteral("Exception"),
                                                            QStringLiteral("NoValue"), QStringLiteral("Information")};
    return texts;
}

void writeText(const QString &path, const QString &text)
{
    values::ValuePtr<values::Value<QString>> value;
    if (path.isEmpty() || !value.GetFromTree(path))
        return;
    if (value->GetValue() == text)
        value->HasChanged(ChangeCodeValue, nullptr); // or nobody would see that it was answered again
    else
        value->SetValue(text, nullptr);
}

/// Belongs to no object: the one that posts it may be gone when it runs.
void writeTexts(const QString &text, const QString &path1, const QString &path2)
{
    try {
        traceAt(TraceLevel::Debug, sourceName,
                [&] { return QStringLiteral("WriteCommandResponseInternal %1, %2, %3").arg(text, path1, path2); });
        writeText(path1, text);
        writeText(path2, text);
    } catch (...) { // contract: whatever an observer throws ends here
        traceAt(TraceLevel::Normal, sourceName,
                [] { return QStringLiteral("UNKNOWN EXCEPTION in ErrorDescriptor::WriteCommandResponseInternal"); });
    }
}

void postTexts(const QString &text, const QString &path1, const QString &path2 = {})
{
    const auto handler = ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QLatin1String(sourceName));
    handler->post(RunInMainThreadEvent([=] { writeTexts(text, path1, path2); }));
}

QString errorCodeBelow(const QString &node)
{
    return node + u'/' + korve::name::ErrorCode;
}

} // namespace

ErrorDescriptor::ErrorDescriptor(const QString &rootPath) : rootPath(rootPath) {}

QString ErrorDescriptor::ConstructErrorString(const ErrorClassifier &classifier, const QString &errorCode,
                                              const QString &message)
{
    static std::atomic<quint64> number = 0;
    const QString separator = QStringLiteral("@");
    return QString::number(++number) + separator + Image(classifier) + separator + errorCode + separator + message;
}

void ErrorDescriptor::WriteCommandResponse(const ErrorClassifier &classifier, const QString &errorCode,
                                           const QString &message)
{
    postTexts(ConstructErrorString(classifier, errorCode, message), errorCodeBelow(rootPath + korve::path::command));
}

void ErrorDescriptor::WriteCommandResponse(const ErrorClassifier &classifier, const QString &channelId,
                                           const QString &errorCode, const QString &message)
{
    postTexts(ConstructErrorString(classifier, errorCode, message), errorCodeBelow(rootPath + korve::path::command),
              errorCodeBelow(rootPath + korve::path::channel + u'/' + channelId));
}

void ErrorDescriptor::WriteCommandResponseToTree(const ErrorClassifier &classifier, const QString &path,
                                                 const QString &errorCode, const QString &message)
{
    postTexts(ConstructErrorString(classifier, errorCode, message), path);
}

void ErrorDescriptor::WriteCommandResponseInternal(const QString &text, const QString &path1, const QString &path2)
{
    writeTexts(text, path1, path2);
}

ErrorDescriptor::StruReturnErrorCode ErrorDescriptor::GetErrorCode(const QString &text)
{
    const QMutexLocker lock(&mutex);
    try {
        lastError = QStringLiteral("ErrorDescriptor::GetErrorCode ->") + text + QStringLiteral(" is corrupt");
        const auto section = [&](int number) { return text.section(u'@', number, number); };
        const ErrorClassifier classifier = ImageToValue(section(1));
        if (classifier != NoValue)
            return {.valid = true, .classifier = classifier, .errorCode = section(2), .message = section(3)};
        traceAt(TraceLevel::Normal, sourceName, [&] { return lastError; });
    } catch (...) {                             // contract: none leaves
        traceAt(TraceLevel::Normal, sourceName, // contract: the word is not the class's name
                [] { return QStringLiteral("UNKNOWN EXCEPTION in ErrorDescription::GetErrorCode"); });
    }
    return {};
}

ErrorDescriptor::StruReturnErrorCode *ErrorDescriptor::GetErrorCodePtr(const QString &text)
{
    return std::make_unique<StruReturnErrorCode>(GetErrorCode(text)).release();
}

QString ErrorDescriptor::Image(const ErrorClassifier &classifier)
{
    const bool isKnown = classifier >= 0 && classifier < classifierCount;
    return isKnown ? images()[static_cast<std::size_t>(classifier)] : QString();
}

ErrorDescriptor::ErrorClassifier ErrorDescriptor::ImageToValue(const QString &image)
{
    const auto found = std::find(images().begin(), images().end(), image);
    return found == images().end() ? NoValue : static_cast<ErrorClassifier>(found - images().begin());
}

QList<QString> ErrorDescriptor::Split(const QString &text)
{
    return text.split(QStringLiteral("||"));
}

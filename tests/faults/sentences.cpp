#include "tests/faults/sentences.h"

#include "korvebase/toolbarhelper.h"
#include "korvebase/traceerror.h"

#include <QFile>

#include <map>
#include <stdexcept>

namespace sentences
{

namespace
{

/// By number, or "other".
std::map<std::string, QString> tableOf(const std::string &flow)
{
    QFile file(QStringLiteral(ERROR_TEXTS "/%1.txt").arg(QString::fromStdString(flow).toLower()));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no texts of " + flow);
    std::map<std::string, QString> table;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts))
        if (!line.startsWith(u'#')) {
            const QString number = line.section(u'\t', 0, 0);
            table[number.toStdString()] = line.section(u'\t', 1).mid(1).chopped(1);
        }
    return table;
}

bool isToolbar(const std::string &flow)
{
    return flow == "Toolbar0" || flow == "Toolbar1";
}

bool hasPlaces(const std::string &flow)
{
    return flow != "StartRecording" && flow != "StopRecording"; // they say "%1" where they could say more
}

/// What stands before the sentence, or in one that knows no number.
std::string prefixOf(const std::string &flow, const std::string &number, bool isKnown)
{
    if (flow == "Toolbar0" && !isKnown)
        return number;
    return isToolbar(flow) ? "(" + number + ") " : "Id: " + number + " : ";
}

/// There the sentence of all others takes the prefix as its only argument.
bool takesPrefix(const std::string &flow, bool isKnown)
{
    return !isKnown && (flow == "History" || isToolbar(flow));
}

} // namespace

const std::vector<std::string> &flows()
{
    static const std::vector<std::string> names{
        "Admin",         "Setup",          "FirmwareVersion", "AddBookmark", "GetBookmark", "RemoveBookmark", "Channel",
        "StartReplay",   "ControlReplay",  "StartRecording",  "StopRecording", "History",   "Toolbar0",       "Toolbar1"};
    return names;
}

std::string read(const std::string &flow, const std::string &number, const std::string &text)
{
    const auto error = static_cast<unsigned>(std::stoul(number));
    if (isToolbar(flow)) {
        using KorveCommon::ToolbarHelper;
        const auto context = flow == "Toolbar0" ? ToolbarHelper::ActionErrors : ToolbarHelper::RecordErrors;
        return ToolbarHelper::Instance().ErrorId2Text(error, context).toStdString();
    }
    const auto found = std::find(flows().begin(), flows().end(), flow);
    if (found == flows().end())
        throw std::runtime_error("no flow " + flow);
    const auto type = static_cast<KorveManagement::TraceError::MethodCallType>(found - flows().begin());
    return KorveManagement::TraceError::toText(error, type, QString::fromStdString(text)).toStdString();
}

std::vector<std::string> numbersOf(const std::string &flow)
{
    std::vector<std::string> numbers;
    for (const auto &[number, text] : tableOf(flow))
        numbers.push_back(number);
    return numbers;
}

std::string sentence(const std::string &flow, const std::string &number, const std::string &text)
{
    const std::map<std::string, QString> table = tableOf(flow);
    const bool isKnown = table.count(number) != 0;
    QString words = table.at(isKnown ? number : "other");
    const std::string prefix = prefixOf(flow, number, isKnown);
    if (takesPrefix(flow, isKnown))
        return words.replace(QLatin1String("%1"), QString::fromStdString(prefix)).toStdString();
    if (hasPlaces(flow))
        words.replace(QLatin1String("%1"), QString::fromStdString(text));
    return prefix + words.replace(QLatin1String("%2"), QString::fromStdString(number)).toStdString();
}

} // namespace sentences

#include "tests/faults/sentences.h"

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

bool hasPlaces(const std::string &flow)
{
    return flow != "StartRecording" && flow != "StopRecording"; // they say "%1" where they could say more
}

} // namespace

const std::vector<std::string> &flows()
{
    static const std::vector<std::string> names{"Admin",          "Setup",         "FirmwareVersion", "AddBookmark",
                                                "GetBookmark",    "RemoveBookmark", "Channel",         "StartReplay",
                                                "ControlReplay",  "StartRecording", "StopRecording",   "History"};
    return names;
}

KorveManagement::TraceError::MethodCallType typeOf(const std::string &flow)
{
    const auto found = std::find(flows().begin(), flows().end(), flow);
    if (found == flows().end())
        throw std::runtime_error("no flow " + flow);
    return static_cast<KorveManagement::TraceError::MethodCallType>(found - flows().begin());
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
    const std::string prefix = "Id: " + number + " : ";
    if (flow == "History" && !isKnown)
        return words.replace(QLatin1String("%1"), QString::fromStdString(prefix)).toStdString();
    if (hasPlaces(flow))
        words.replace(QLatin1String("%1"), QString::fromStdString(text));
    return prefix + words.replace(QLatin1String("%2"), QString::fromStdString(number)).toStdString();
}

} // namespace sentences

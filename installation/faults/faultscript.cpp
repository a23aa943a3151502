#include "installation/faults/faultscript.h"

#include "installation/faults/lineparser.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace installation::faults
{

namespace
{

constexpr qint64 mostBytes = FaultScript::longestLine * FaultScript::mostLines;

void parseLine(std::string_view line, const std::string &name, std::size_t number, FaultScript &script)
{
    const std::string place = name + ':' + std::to_string(number);
    try {
        if (number > FaultScript::mostLines)
            throw std::invalid_argument("too many lines");
        if (line.size() > FaultScript::longestLine)
            throw std::invalid_argument("the line is too long");
        LineParser(line, place, script).parse();
    } catch (const std::invalid_argument &reason) {
        throw std::invalid_argument(place + ": " + reason.what());
    }
}

} // namespace

FaultScript FaultScript::parsed(std::string_view text, const std::string &name)
{
    FaultScript script;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, length);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        parseLine(line, name, number, script);
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return script;
}

FaultScript FaultScript::read(const QString &path)
{
    if (path.isEmpty())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::invalid_argument(
            QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()).toStdString());
    const QByteArray bytes = file.read(mostBytes + 1);
    if (bytes.size() > mostBytes)
        throw std::invalid_argument(path.toStdString() + " is too long for a fault script");
    return parsed({bytes.constData(), static_cast<std::size_t>(bytes.size())}, path.toStdString());
}

} // namespace installation::faults

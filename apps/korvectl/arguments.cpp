#include "apps/korvectl/arguments.h"

#include <QDateTime>
#include <QRegularExpression>

#include <array>
#include <cmath>

#include <arpa/inet.h>

namespace korvectl
{

namespace
{

struct Unit {
    const char *name;
    double factor; ///< bytes or microseconds
    bool isTime;
};

constexpr std::array unitsOfPlaces{Unit{"", 1, false},      Unit{"B", 1, false},    Unit{"kB", 1e3, false},
                                   Unit{"MB", 1e6, false},  Unit{"GB", 1e9, false}, Unit{"TB", 1e12, false},
                                   Unit{"us", 1, true},     Unit{"ms", 1e3, true},  Unit{"s", 1e6, true},
                                   Unit{"min", 60e6, true}, Unit{"h", 3600e6, true}};

constexpr double mostExact = 9007199254740992.0; // of the whole numbers that a double tells apart

QRegularExpressionMatch match(const QString &word, const char *pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern))).match(word);
}

bool isEmpty(const Section &section)
{
    const Position begin = section.begin.value_or(Position{0, section.end && section.end->isTime});
    return section.end && begin.isTime == section.end->isTime && begin.amount >= section.end->amount;
}

std::optional<Moment> parsedDate(const QString &word)
{
    const auto found = match(word, "(\\d{4}-\\d\\d-\\d\\d)[T ](\\d\\d:\\d\\d:\\d\\d)(?:\\.(\\d{1,6}))?Z?");
    QDateTime time = QDateTime::fromString(found.captured(1) + u'T' + found.captured(2), Qt::ISODate);
    time.setTimeSpec(Qt::UTC);
    if (!found.hasMatch() || !time.isValid())
        return {};
    constexpr int digits = 6;
    const quint64 fractionUs = found.captured(3).leftJustified(digits, u'0').toULongLong();
    return Moment{Moment::Kind::Absolute, static_cast<quint64>(time.toSecsSinceEpoch() * 1'000'000) + fractionUs};
}

std::optional<Moment> parsedAbsolute(const QString &word)
{
    bool isNumber = false;
    const quint64 us = word.toULongLong(&isNumber);
    if (isNumber && match(word, "\\d+").hasMatch())
        return Moment{Moment::Kind::Absolute, us};
    return parsedDate(word);
}

} // namespace

std::optional<Position> Position::parsed(const QString &word)
{
    const auto found = match(word, "(\\d+(?:\\.\\d+)?)\\s?([A-Za-z]*)");
    if (!found.hasMatch())
        return {};
    for (const Unit &unit : unitsOfPlaces) {
        if (found.captured(2) != QLatin1String(unit.name))
            continue;
        bool isWhole = false;
        const quint64 whole = found.captured(1).toULongLong(&isWhole);
        if (unit.factor == 1 && isWhole && !unit.isTime)
            return Position{whole, false};
        const double amount = found.captured(1).toDouble() * unit.factor;
        const bool isUsable = amount < mostExact && (unit.isTime || std::floor(amount) == amount);
        return isUsable ? std::optional(Position{static_cast<quint64>(std::llround(amount)), unit.isTime})
                        : std::nullopt;
    }
    return {};
}

std::optional<Section> Section::parsed(const QString &word)
{
    const QStringList ends = word.split(u':');
    if (ends.size() != 2)
        return {};
    Section section;
    for (const auto &[text, place] : {std::pair(ends[0], &section.begin), std::pair(ends[1], &section.end)}) {
        if (text.isEmpty())
            continue;
        *place = Position::parsed(text);
        if (!*place)
            return {};
    }
    return isEmpty(section) ? std::nullopt : std::optional(section);
}

std::optional<Moment> Moment::parsed(const QString &word)
{
    if (!word.startsWith(u'+'))
        return parsedAbsolute(word);
    const auto offset = Position::parsed(word.mid(1));
    return offset && offset->isTime ? std::optional(Moment{Kind::AfterBegin, offset->amount}) : std::nullopt;
}

std::optional<Moment> Moment::parsedOrNow(const QString &word)
{
    return word == QLatin1String("now") ? Moment{Kind::Now, 0} : parsedAbsolute(word);
}

std::optional<Endpoint> Endpoint::parsed(const QString &word)
{
    const auto found = match(word, "([0-9.]+):(\\d{1,5})");
    in_addr address{};
    bool isPort = false;
    const quint16 port = found.captured(2).toUShort(&isPort);
    if (::inet_pton(AF_INET, found.captured(1).toLatin1().constData(), &address) != 1 || !isPort || port == 0)
        return {};
    return Endpoint{found.captured(1), port};
}

QString Endpoint::text() const
{
    return QStringLiteral("%1:%2").arg(host).arg(port);
}

std::optional<Speed> Speed::parsed(const QString &word)
{
    if (word == QLatin1String("max"))
        return Speed{1, true};
    const auto found = match(word, "(\\d+(?:\\.\\d+)?)x?");
    const double factor = found.captured(1).toDouble();
    constexpr double mostFactor = 1e6;
    return factor > 0 && factor <= mostFactor ? std::optional(Speed{factor, false}) : std::nullopt;
}

std::optional<QString> parsedIdentifier(const QString &word)
{
    const bool isKept = QString::fromLatin1(word.toLatin1()) == word;
    return word.isEmpty() || !isKept ? std::nullopt : std::optional(word);
}

std::optional<bool> parsedSwitch(const QString &word)
{
    if (word == QLatin1String("on"))
        return true;
    return word == QLatin1String("off") ? std::optional(false) : std::nullopt;
}

std::optional<unsigned long> parsedNumber(const QString &word)
{
    bool isNumber = false;
    const unsigned long number = word.toULong(&isNumber);
    return isNumber && match(word, "\\d+").hasMatch() ? std::optional(number) : std::nullopt;
}

} // namespace korvectl

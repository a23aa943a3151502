#pragma once

#include <QString>

#include <optional>

/// What words of a command line mean. No word means two things; without result for one that means nothing.
namespace korvectl
{

/// A place in a record, counted from its beginning.
struct Position {
    quint64 amount = 0; ///< bytes or microseconds
    bool isTime = false;

    bool operator==(const Position &) const = default;
    /// "16000", "16kB", "1.5s", "200ms", "2min"; a thousand of each prefix is one of the next.
    static std::optional<Position> parsed(const QString &word);
};

/// A part of a record, up to, and without, its end.
struct Section {
    std::optional<Position> begin; ///< without: that of the record
    std::optional<Position> end;   ///< without: that of the record

    bool operator==(const Section &) const = default;
    /// "FROM:TO", each of them a position or nothing. Without result also when it is certainly empty.
    static std::optional<Section> parsed(const QString &word);
};

/// A moment.
struct Moment {
    enum class Kind {
        Absolute,   ///< since 1970, UTC
        AfterBegin, ///< of a record
        Now,
    };

    Kind kind = Kind::Absolute;
    quint64 us = 0;

    bool operator==(const Moment &) const = default;
    /// "2026-11-21T12:32:22.629123Z", with a blank for "T" and without fraction or "Z", too; microseconds since 1970;
    /// "+1.5s" after the beginning.
    static std::optional<Moment> parsed(const QString &word);
    /// Takes what parsed() takes, but "now" instead of "+1.5s".
    static std::optional<Moment> parsedOrNow(const QString &word);
};

/// An IPv4 address in digits, and a port.
struct Endpoint {
    QString host;
    quint16 port = 0;

    bool operator==(const Endpoint &) const = default;
    static std::optional<Endpoint> parsed(const QString &word);
    QString text() const;
};

/// How fast a record is replayed, compared with its own rate.
struct Speed {
    double factor = 1;
    bool isUnlimited = false;

    /// "2", "0.5x", "max".
    static std::optional<Speed> parsed(const QString &word);
};

/// What goes out as an identifier: not empty, and of letters that Latin-1 has.
std::optional<QString> parsedIdentifier(const QString &word);

/// "on" or "off".
std::optional<bool> parsedSwitch(const QString &word);

/// Decimal digits.
std::optional<unsigned long> parsedNumber(const QString &word);

} // namespace korvectl

#pragma once

#include <QLocale>
#include <QString>

#include <limits>

/// How contents become text and back. `fromText` ignores blanks around a number and leaves the content alone, with
/// false, when the text does not stand for one.
namespace values
{
template <typename T> struct FormatString {
    static QString toText(const T &content) { return content; }
    static bool fromText(const QString &text, T &content)
    {
        content = text;
        return true;
    }
};

/// "true" and "false"; reads "1" and "0" too, in any case.
template <typename T> struct FormatBool {
    static QString toText(T content) { return content ? QStringLiteral("true") : QStringLiteral("false"); }
    static bool fromText(const QString &text, T &content)
    {
        const QString word = text.trimmed().toLower();
        const bool yes = word == QLatin1String("true") || word == QLatin1String("1");
        if (!yes && word != QLatin1String("false") && word != QLatin1String("0"))
            return false;
        content = yes;
        return true;
    }
};

template <typename T> struct FormatInt {
    static QString toText(T content) { return QString::number(content); }
    static bool fromText(const QString &text, T &content)
    {
        bool ok = false;
        const qint64 number = text.trimmed().toLongLong(&ok);
        if (!ok || number < qint64{std::numeric_limits<T>::min()} || number > qint64{std::numeric_limits<T>::max()})
            return false;
        content = static_cast<T>(number);
        return true;
    }
};

/// The shortest text that is read back as the same number.
template <typename T> struct FormatFloat {
    static QString toText(T content) { return QString::number(content, 'g', QLocale::FloatingPointShortest); }
    static bool fromText(const QString &text, T &content)
    {
        bool ok = false;
        const T number = text.trimmed().toDouble(&ok);
        if (ok)
            content = number;
        return ok;
    }
};
} // namespace values

#include "apps/korvectl/shellwords.h"

#include <algorithm>

namespace korvectl
{

namespace
{

class Reader
{
public:
    explicit Reader(bool splitsAtBlanks) : splitsAtBlanks(splitsAtBlanks) {}

    void read(QChar character)
    {
        if (isEscaped)
            readEscaped(character);
        else if (character == u'\\' && quotation != u'\'')
            isEscaped = true;
        else if (quotation == character)
            quotation = QChar();
        else if (quotation.isNull() && (character == u'"' || character == u'\''))
            quotation = character;
        else if (quotation.isNull() && splitsAtBlanks && character.isSpace())
            endWord();
        else
            words.last() += character;
    }

    QStringList words{QString()};

private:
    void readEscaped(QChar character)
    {
        // Within double quotation marks, a backslash is only one before what means something there.
        if (quotation == u'"' && !QStringLiteral("$`\"\\").contains(character))
            words.last() += u'\\';
        words.last() += character;
        isEscaped = false;
    }
    void endWord()
    {
        if (!words.last().isEmpty())
            words << QString();
    }

    const bool splitsAtBlanks;
    QChar quotation; // null outside of one
    bool isEscaped = false;
};

QStringList wordsOf(const QString &text, bool splitsAtBlanks)
{
    Reader reader(splitsAtBlanks);
    for (const QChar character : text)
        reader.read(character);
    return reader.words;
}

} // namespace

QStringList shellWords(const QString &line)
{
    return wordsOf(line, true);
}

QString unquoted(const QString &word)
{
    return wordsOf(word, false).first();
}

QString quotedForShell(const QString &text)
{
    const auto isPlain = [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("_-./:,+@%=").contains(character);
    };
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isPlain))
        return text;
    return u'\'' + QString(text).replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

} // namespace korvectl

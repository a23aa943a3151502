#include "apps/korvectl/displaywidth.h"

#include <QTextBoundaryFinder>
#include <QVector>

#include <clocale>
#include <cwchar>

namespace korvectl
{

namespace
{

/// Within it, the C library knows all letters, whatever the locale of the process.
class LettersOfAllLanguages
{
public:
    LettersOfAllLanguages() : before(::uselocale(known())) {}
    ~LettersOfAllLanguages() { ::uselocale(before); }

private:
    static locale_t known()
    {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale; // null, on a system without it, changes nothing
    }

    const locale_t before;
};

} // namespace

int displayWidth(const QString &text)
{
    const LettersOfAllLanguages letters;
    int width = 0;
    for (const uint letter : text.toUcs4()) {
        const int own = ::wcwidth(static_cast<wchar_t>(letter));
        width += own < 0 ? 1 : own; // one that is not known is drawn as some sign
    }
    return width;
}

QString cutToWidth(const QString &text, int width)
{
    if (displayWidth(text) <= width)
        return text;
    const QString dots = QStringLiteral("...");
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
    int end = 0;
    int used = displayWidth(dots);
    for (int next = letters.toNextBoundary(); next >= 0; next = letters.toNextBoundary()) {
        used += displayWidth(text.mid(end, next - end));
        if (used > width)
            break;
        end = next;
    }
    return text.left(end) + dots;
}

} // namespace korvectl

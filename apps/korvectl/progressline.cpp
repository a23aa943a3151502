#include "apps/korvectl/progressline.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/displaywidth.h"
#include "apps/korvectl/units.h"
#include "programs/printable.h"

#include <algorithm>
#include <iostream>

#include <unistd.h>

namespace korvectl
{

namespace
{

/// At most @p most letters, of the end, where names of files differ.
QString shortened(const QString &title, int most)
{
    return title.size() <= most ? title : QChar(0x2026) + title.right(most - 1);
}

} // namespace

ProgressLine::ProgressLine() : isTerminal(::isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine()
{
    if (!shown.isEmpty())
        std::cerr << "\r\x1b[K" << std::flush;
}

void ProgressLine::show(const QString &title, quint64 done, quint64 total)
{
    const QString line = drawn(title, done, total, terminalSize(STDERR_FILENO).columns - 1);
    if (!isTerminal || line == shown)
        return;
    shown = line;
    std::cerr << '\r' << line.toStdString() << "\x1b[K" << std::flush;
}

QString ProgressLine::drawn(const QString &title, quint64 done, quint64 total, int width)
{
    constexpr int widest = 40;
    const double part = total == 0 ? 1.0 : std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const QString amount = QStringLiteral("%1 % of %2").arg(static_cast<int>(part * 100), 3).arg(units::bytes(total));
    const int forTitle = width - amount.size() - 4; // with a bar of no length
    const QString shown = shortened(programs::printable(title), std::max(1, forTitle));
    const int room = std::clamp(forTitle - shown.size(), 0, widest);
    const int filled = static_cast<int>(part * room);
    return QStringLiteral("%1 [%2%3] %4").arg(shown, QString(filled, u'#'), QString(room - filled, u'.'), amount);
}

} // namespace korvectl

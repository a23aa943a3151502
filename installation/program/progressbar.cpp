#include "installation/program/progressbar.h"

#include <algorithm>
#include <iostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace installation
{

namespace
{

int terminalWidth()
{
    constexpr int usual = 80;
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

} // namespace

ProgressBar::ProgressBar(const QString &title) : title(title), isTerminal(::isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar()
{
    if (!shown.isEmpty())
        std::cerr << "\r\x1b[K" << std::flush;
}

void ProgressBar::show(quint64 done, quint64 total)
{
    if (!isTerminal)
        return;
    const QString line = drawn(title, done, total, terminalWidth() - 1);
    if (line == shown)
        return;
    shown = line;
    std::cerr << '\r' << line.toStdString() << "\x1b[K" << std::flush;
}

QString ProgressBar::drawn(const QString &title, quint64 done, quint64 total, int width)
{
    const double part = total == 0 ? 0.0 : std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const QString percent = QString::number(static_cast<int>(part * 100)).rightJustified(3) + QLatin1String(" %");
    const int room = std::clamp(width - int(title.size() + percent.size()) - 4, 0, 50);
    const int filled = static_cast<int>(part * room);
    const QString bar = QString(filled, u'#') + QString(room - filled, u'.');
    return QStringLiteral("%1 [%2] %3").arg(title, bar, percent);
}

} // namespace installation

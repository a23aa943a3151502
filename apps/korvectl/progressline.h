#pragma once

#include <QString>

namespace korvectl
{

/// A line on the terminal of standard error that shows how far something is; nothing where there is no terminal.
class ProgressLine
{
public:
    ProgressLine();
    /// Takes the line away.
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;

    void show(const QString &title, quint64 done, quint64 total);
    /// The line for that, @p width characters wide at most; of a long title, the end.
    static QString drawn(const QString &title, quint64 done, quint64 total, int width);

private:
    const bool isTerminal;
    QString shown;
};

} // namespace korvectl

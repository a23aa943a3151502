#pragma once

#include <QString>

namespace installation
{

/// A line on the terminal of standard error that shows how far something is; nothing where there is no terminal.
class ProgressBar
{
public:
    explicit ProgressBar(const QString &title);
    /// Takes the line away.
    ~ProgressBar();
    ProgressBar(const ProgressBar &) = delete;

    /// @p total 0: nobody knows yet.
    void show(quint64 done, quint64 total);
    /// The line for that, @p width characters wide at most where the title allows it.
    static QString drawn(const QString &title, quint64 done, quint64 total, int width);

private:
    const QString title;
    const bool isTerminal;
    QString shown;
};

} // namespace installation

#pragma once

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QStringList>

#include <functional>

#include <unistd.h>

/// Hands each line of standard input, in words, to `obey`; the program ends with its input.
class CommandInput
{
public:
    explicit CommandInput(std::function<void(const QStringList &words)> obey) : obey(std::move(obey))
    {
        QObject::connect(&input, &QSocketNotifier::activated, &input, [this] { read(); });
    }

private:
    void read()
    {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return QCoreApplication::quit();
        unread.append(bytes, static_cast<int>(count));
        for (int end; (end = unread.indexOf('\n')) >= 0; unread.remove(0, end + 1))
            obey(QString::fromUtf8(unread.left(end)).split(u' '));
    }

    const std::function<void(const QStringList &words)> obey;
    QSocketNotifier input{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray unread;
};

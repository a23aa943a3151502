#pragma once

#include <QObject>

#include <chrono>
#include <functional>

class QEventLoop;

namespace korvectl
{

/// From its making on, SIGINT and SIGTERM are a signal of Qt instead of the end of the program. A second one is that
/// again.
///
/// One at a time.  Thread: main.
class Interruption : public QObject
{
    Q_OBJECT
public:
    Interruption();
    ~Interruption() override;

Q_SIGNALS:
    void si_interrupted();
};

/// Calls @p quit when nobody reads standard output any more, as behind `| head`, unless @p context has gone.
void whenUnread(QObject &context, const std::function<void()> &quit);

/// Runs @p loop until it is told to quit, or interrupted, or unread, or that time is over; 0: for good.
void runUntil(const Interruption &interruption, QEventLoop &loop, std::chrono::milliseconds limit);

} // namespace korvectl

#pragma once

#include <QObject>

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

} // namespace korvectl

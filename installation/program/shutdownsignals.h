#pragma once

#include <QObject>

namespace installation
{

/// Turns SIGTERM and SIGINT into the end of the application's event loop.
///
/// Made on the main thread before any other thread, which then leave these signals alone.
class ShutdownSignals : public QObject
{
    Q_OBJECT
public:
    /// @throws std::system_error
    ShutdownSignals();
    ~ShutdownSignals() override;

private:
    int descriptor;
};

} // namespace installation

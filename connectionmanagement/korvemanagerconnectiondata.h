#pragma once

#include "connectionmanagement/connectiontype.h"
#include "coresupport/iobserver.h"
#include "korvebase/korvebase_export.h"
#include "valuetreelib/nodeobservingptr.h"

#include <QObject>
#include <QStringList>

#include <initializer_list>
#include <memory>

class VtConnectionObserver;

namespace KorveCommon
{
/// One tic: a value-tree connection to a recorder manager, and whether it is up.
///
/// Every signal carries the subsystem that the tic was made for. A slot may delete the tic.
/// Thread: main.
class KORVEBASE_EXPORT KorveManagerConnectionData : public QObject, public IObserver
{
    Q_OBJECT
public:
    /// @p connection must not be null.
    KorveManagerConnectionData(std::shared_ptr<VtConnectionObserver> connection, ConnectionType type,
                               const QString &subsystem);
    /// Shares the connection and observes the same node; does not follow the connection's signals.
    KorveManagerConnectionData(const KorveManagerConnectionData &other);
    ~KorveManagerConnectionData() override;

    void Update(Observable *subject, TChangeCode code) override;

    std::shared_ptr<VtConnectionObserver> getConnection() const { return connection; }
    QString subsystem() const { return ownSubsystem; }
    ConnectionType connectionType() const { return type; }
    bool isConnected() const { return connected; }
    /// The subsystems that this tic serves.
    QStringList &subsystemListEntry() { return subsystems; }

public Q_SLOTS:
    void onConnected(const QString &path);
    void onDisconnected(const QString &path);
    void onClientTerminating();

Q_SIGNALS:
    void KorveServerConnectionEstablished(const QString &subsystem);
    void KorveServerConnectionDisconnected(const QString &subsystem);
    void DevicesConnectionEstablished(const QString &subsystem);
    void DevicesConnectionDisconnected(const QString &subsystem);
    void ChannelConnectionEstablished(const QString &subsystem);
    void ChannelConnectionDisconnected(const QString &subsystem);
    void ConnectionChanged(const QString &subsystem);
    void si_deviceNodeAdded(const QString &subsystem);

private:
    using Signal = void (KorveManagerConnectionData::*)(const QString &);
    void tell(std::initializer_list<Signal> signalsInOrder);

    std::shared_ptr<VtConnectionObserver> connection;
    QStringList subsystems;
    ConnectionType type;
    bool connected = false;
    QString ownSubsystem;
    values::NodeObservingPtr node; ///< at the connection's client path
};
} // namespace KorveCommon

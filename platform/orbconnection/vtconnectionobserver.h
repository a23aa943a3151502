#pragma once

#include "orbconnection/mirrortiming.h"
#include "orbconnection/orbconnection_export.h"
#include "orbconnection/vtconnectdata.h"

#include <QObject>

#include <memory>

class IVtClient;

/// Mirrors one node of another process's tree under a path of this process's tree, for as long as it lives.
///
/// Connects by itself, from the event loop, and again after each loss. A set of the boolean value at the re-register
/// path forces that. After a loss each mirrored value has ValueStateConnectionLost, and mirrored nodes and values tell
/// ChangeCodeDeleted; on the return of the server they are as it says. docs/mirror.md has what is sent to the server,
/// what is not, and whose word holds.
/// Thread: main; never blocks. Needs a running OrbHandler.  Errors: traced; it tries again.
class ORBCONNECTION_EXPORT VtConnectionObserver : public QObject
{
    Q_OBJECT
public:
    /// @p reregisterPath is below @p clientPath; empty: there is none.
    VtConnectionObserver(const QString &serverPath, const QString &clientPath, const VtConnectData &address,
                         const QString &reregisterPath);
    VtConnectionObserver(const QString &serverPath, const QString &clientPath, const VtConnectData &address,
                         const QString &reregisterPath, const MirrorTiming &timing);
    /// Says si_clientTerminating; the mirrored values are as after a loss.
    ~VtConnectionObserver() override;

    /// On a loss, the node at the client path goes, with all below it; never a value of that path.
    void setDeleteClientTicPath(bool on);

    /// Never null; goes with this.
    IVtClient *vtClient() const;
    const VtConnectData &connData() const;
    /// Without "/" at the end.
    QString getBaseClientPath() const;
    bool isConnected() const;

    /// Stores the first address of @p hostName. False, with @p ip untouched, when there is none. Blocks for as long as
    /// the system's resolver does.
    static bool GetFirstIPAddressOfHostNameStatic(const QString &hostName, QString &ip, bool preferIPv4);

Q_SIGNALS:
    /// The snapshot is complete. The client path.
    void si_connected(QString clientPath);
    /// The values are lost already. The client path.
    void si_disconnected(QString clientPath);
    void si_clientTerminating();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

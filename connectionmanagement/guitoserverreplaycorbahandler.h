#pragma once

#include "idl/korvemanager.hh"
#include "korvebase/korvebase_export.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/netifparams.h"

#include <QObject>
#include <QString>

#include <memory>

namespace KorveGUI
{
class KorveGuiToServerCorbaHandler;

/// Starts, pauses, continues and stops replays on one device.
///
/// The manager's replay interface is fetched when it is first needed, and again when the connection changes; one that
/// belongs to another device of the same manager serves as well. Positions are bytes within the record's samples.
/// Identifiers go out in Latin-1, other letters as "?".
/// Thread: main. Every command blocks for one remote call, at most for the ORB's call limit, and before that for those
/// that fetch its interface when it has none.
/// Errors: each command answers 0, the manager's number, or one of errornumber.h and of the exception decoders;
/// TraceError with the flows StartReplay and ControlReplay words it. Nothing is called twice.
class KORVEBASE_EXPORT GuiToServerReplayCorbaHandler : public QObject
{
    Q_OBJECT
public:
    using DataRate = KORVE_XML::KORVE_RecordData::DataRate;
    using InterfaceType = KORVE_XML::NetIfParams::KorveInterfaceType;

    /// Shares @p guiHandler, which must not be null.
    explicit GuiToServerReplayCorbaHandler(const std::shared_ptr<KorveGuiToServerCorbaHandler> &guiHandler);
    ~GuiToServerReplayCorbaHandler() override;

    /// Fetches the interface for @p deviceId, which is remembered for later tries and for the traces.
    bool Initialize(const QString &deviceId);

    /// Replays @p count times from @p start to @p stop; 0 means again and again. Of the count 32 bits go out. A @p rate
    /// that the manager does not know is traced and goes out as the lowest.
    unsigned long StartReplay(const QString &deviceId, const QString &recordId, const DataRate &rate,
                              unsigned long long start, unsigned long long stop, unsigned long count);
    /// As above, to a receiver with an interface of that type.
    unsigned long StartReplay(const QString &deviceId, const QString &recordId, const DataRate &rate,
                              unsigned long long start, unsigned long long stop, unsigned long count,
                              const InterfaceType &interfaceType);
    unsigned long PauseReplay(const QString &deviceId, const QString &recordId);
    unsigned long ContinueReplay(const QString &deviceId, const QString &recordId);
    unsigned long StopReplay(const QString &deviceId, const QString &recordId);

    /// Whether the last command failed in such a way that it may have been carried out nevertheless.
    bool OutcomeIsUnknown() const { return outcomeUnknown; }

protected Q_SLOTS:
    void Slot_UpdateConnection(const QString &subsystem);

private:
    bool IsServerAvailable();
    template <typename Request> unsigned long call(const char *operation, const Request &request);

    TQ_KRV::IF_KORVE_Replay_var replayInterface;
    const std::shared_ptr<KorveGuiToServerCorbaHandler> guiHandler;
    QString deviceId; ///< of the last Initialize()
    bool outcomeUnknown = false;
};
} // namespace KorveGUI

#pragma once

#include "connectionmanagement/guitoserveradmincorbahandler.h"
#include "connectionmanagement/guitoserverexportcorbahandler.h"
#include "connectionmanagement/guitoserverreplaycorbahandler.h"
#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "idl/korve.hh"
#include "tests/commands/observedexporter.h"
#include "tests/support/connectioncounter.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

/// A client of a manager, and beside it a way to the recorder that does not need the manager.
class World
{
public:
    /// Connects, which must succeed. @p recordId is the record that commands are about.
    explicit World(const QString &recordId);
    ~World();
    World(const World &) = delete;

    /// New handlers, as after a start of the client.
    void connect();

    // What the recorder has.
    std::string recordName() const;
    bool isDeletable() const;
    int historyEntries(const std::string &text) const;
    int historyEntries(quint64 timestampUs) const;
    int bookmarks(quint64 timestampUs) const;
    int records(const std::string &name) const;
    int records() const;
    quint64 deviceTime() const;
    TQ_KORVE::eRECORD_STATUS status() const;
    bool has(const QByteArray &recordId) const;

    /// A channel of this record's own that takes replays, and never reads them.
    void openChannel();
    /// Ends what the recorder does with the record, and has it replayed anew.
    void replayAnew();
    unsigned long startReplay();
    /// On a channel with an interface of that type.
    unsigned long startReplay(KORVE_XML::NetIfParams::KorveInterfaceType type);
    /// The id of the export of that round, of the exporter of this client.
    std::string exportId(int round) const;
    bool startExport();

    /// How often a command that only asks was answered rightly.
    int rightAnswers = 0;
    std::map<int, QByteArray> copies; ///< of the record, by their rounds
    ConnectionCounter display;        ///< that overview spectra are sent to
    std::map<int, int> shownBefore;   ///< on it, by the rounds

    static constexpr unsigned long long recordBytes = 200000;
    const QString device = QStringLiteral("REC1");
    const QString record;
    const QByteArray recordUtf8 = record.toUtf8();
    const TQ_KORVE::IF_Control_var recorder;
    std::shared_ptr<KorveCommon::HMIServerConnectionData> data;
    std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> manager;
    std::unique_ptr<KorveGUI::GuiToServerAdminCorbaHandler> admin;
    std::unique_ptr<KorveGUI::GuiToServerReplayCorbaHandler> replay;
    std::unique_ptr<KorveGUI::GuiToServerExportCorbaHandler> exports;

    ObservedExporter *const exporter; ///< counted by the ORB

private:
    bool hasChannel = false;
};

/// A text as recorders take it.
TQ_KORVE::wideText deviceText(const std::string &ascii);

#pragma once

#include "connectionmanagement/guitoserveradmincorbahandler.h"
#include "connectionmanagement/guitoserverexportcorbahandler.h"
#include "connectionmanagement/guitoserverreplaycorbahandler.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "tests/connectionmanagement/fakeexporter.h"
#include "tests/connectionmanagement/station.h"
#include "tests/faults/testchannel.h"

#include <functional>
#include <map>
#include <memory>

/// A client of the installation at an address, with all its handlers; it does what scripts name, with the recorder
/// "REC1" and one record.
class Client
{
public:
    Client(const QString &address, const std::string &recordId);
    ~Client();
    Client(const Client &) = delete;

    /// Does what is called @p command, and says what that answered: a number, "true" or "false", or a text.
    /// @throws std::out_of_range when nothing is called so.
    std::string run(const std::string &command);
    /// Whether nobody knows what became of the last command of administration.
    bool outcomeIsUnknown() const { return admin->OutcomeIsUnknown(); }
    bool isConnected() const { return handler->IsConnected(); }

private:
    using GuiToServerReplayCorbaHandler = KorveGUI::GuiToServerReplayCorbaHandler;
    using Command = std::function<std::string(Client &)>;
    static const std::map<std::string, Command> &commands();
    static const std::map<std::string, Command> &recordCommands();
    static const std::map<std::string, Command> &deviceCommands();
    /// About a record or a device that there is not.
    static const std::map<std::string, Command> &mistakenCommands();
    static const std::map<std::string, Command> &channelCommands();
    static const std::map<std::string, Command> &exportCommands();
    static const std::map<std::string, Command> &connectionCommands();
    /// Those of a replay, their names with @p ending behind them, given to what @p handler answers.
    static std::map<std::string, Command> replayCommands(const std::string &ending,
                                                         GuiToServerReplayCorbaHandler &(Client::*handler)());

    /// Makes the handlers anew, without what they have fetched.
    void makeHandlers();
    std::string startReplay(unsigned long long begin, unsigned long long end, unsigned long count = 1);
    /// The handler of replays that has been told of the device, as far as it can be had.
    GuiToServerReplayCorbaHandler &replayOfDevice();
    /// One that has not been told of a device.
    GuiToServerReplayCorbaHandler &replayOfNobody();
    /// A receiver for replays or a source of recordings, at an address where nobody is.
    std::string registerChannel(bool isForReplay);

    /// Takes the replay session of the record at the recorder, past the manager, and makes its link.
    void linkByAnother();

    const QString address;
    const QString record;
    const std::shared_ptr<Station> station;
    const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> handler;
    std::unique_ptr<KorveGUI::GuiToServerAdminCorbaHandler> admin;
    std::unique_ptr<GuiToServerReplayCorbaHandler> replay;
    std::unique_ptr<KorveGUI::GuiToServerExportCorbaHandler> exporting;
    FakeExporter exporter;
    TQ_KRV::IF_ExportCallback_var exporterReference;
    TestChannel channel;
};

#include "tests/faults/testchannel.h"

#include "tests/support/waiting.h"

#include "korvebase/errordescriptor.h"
#include "orbconnection/orbhandler.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <QtTest/QTest>

#include <array>
#include <stdexcept>

using CorbaCommon::OrbHandler;
using ChanMan = TQ_KRV::IF_KRV_c_ChanMan;

namespace
{

constexpr CORBA::ULongLong beyondTheClass = 100'000'000; // samples a second
const QString branch = QStringLiteral("/KORVE/Channel");
const std::string done = "true";

constexpr std::array refusals{"IPC_Not_Started",   "IPC_Not_Stopped",          "Resource_Fault",
                              "Channel_Unknown",   "Unable_To_Start_DataFlow", "Channel_Not_Active",
                              "Unable_To_Connect", "Unable_To_Disconnect",     "Fault"};
static_assert(refusals.size() == ChanMan::Fault + 1, "the kinds of the wire, in its order");

VtConnectData treeAt(const QString &address)
{
    VtConnectData where;
    where.ipAddress = address;
    return where;
}

QString textAt(const QString &path)
{
    const auto *const value = dynamic_cast<values::Value<QString> *>(values::Tree::Instance().findValue(path));
    return value && value->GetState() == values::ValueStateValid ? value->GetValue() : QString();
}

} // namespace

TestChannel::TestChannel(const QString &address, const FindManager &findManager)
    : address(address), findManager(findManager), program(new FakeChannelManager)
{
    const PortableServer::ObjectId_var object = OrbHandler::Instance().rootPoa()->activate_object(program);
}

TestChannel::~TestChannel()
{
    endProgram();
    program->_remove_ref();
}

void TestChannel::endProgram()
{
    try {
        const PortableServer::POA_ptr poa = OrbHandler::Instance().rootPoa();
        const PortableServer::ObjectId_var object = poa->servant_to_id(program);
        poa->deactivate_object(object);
    } catch (const PortableServer::POA::ServantNotActive &) { // it has ended before
    }
}

void TestChannel::makeWithListener()
{
    listener.emplace();
    make(TQ_KRV::TCP_IF, listener->address().toLatin1());
}

void TestChannel::makeOnTakenPort()
{
    if (!taken.bind(QHostAddress::Any))
        throw std::runtime_error("no port can be taken");
    make(TQ_KRV::UDP_IF, address.toLatin1() + ':' + QByteArray::number(taken.localPort()));
}

void TestChannel::makeWithProgram(TQ_KRV::interfaceTypeEnum type)
{
    make(type, QByteArray());
}

void TestChannel::make(TQ_KRV::interfaceTypeEnum type, const QByteArray &receiver)
{
    if (!mirror)
        mirror.emplace(branch, branch, treeAt(address), QString());
    if (!CORBA::is_nil(channel))
        channel->removeChannelForced();
    const TQ_KRV::IF_KRV_c_ChanMan_var peer = receiver.isEmpty() ? program->_this() : ChanMan::_nil();
    const QByteArray name = "test " + QByteArray::number(++made);
    const TQ_KRV::IF_KRV_c_KRV_var manager = findManager();
    channel = manager->registerReceiverChannel(peer, TQ_KRV::drHF_20k, TQ_KRV::dfTIMEDOMAIN_DATA, true, true, name,
                                               "REC1", type, receiver, id.out());
}

void TestChannel::nameSource(TQ_KRV::interfaceTypeEnum type, CORBA::ULong ids)
{
    program->sources.length(1);
    program->sources[0] = {type, 0x7f000001, 9, 0};
    program->sourceIds.length(ids);
}

std::string TestChannel::startRecording()
{
    return numberOf([this] { channel->startRecording(0, L"", 0); });
}

std::string TestChannel::numberOf(const std::function<void()> &command) const
{
    try {
        command();
    } catch (const TQ_KRV::IF_KRV_c_Chan::exChan &) {
        return shownFailure();
    } catch (const CORBA::SystemException &error) {
        return error._name();
    }
    return "0";
}

std::string TestChannel::shownFailure() const
{
    const QString path = QStringLiteral("%1/%2/ErrorCode").arg(branch, QLatin1String(id.in()));
    if (!QTest::qWaitFor([&] { return !textAt(path).isEmpty(); }, patienceMs))
        return "none";
    return ErrorDescriptor().GetErrorCode(textAt(path)).errorCode.toStdString();
}

const std::map<std::string, TestChannel::Command> &TestChannel::commands()
{
    static const std::map<std::string, Command> all = [] {
        std::map<std::string, Command> each = makingCommands();
        for (const auto &more : {programCommands(), refusalCommands(), recordingCommands()})
            each.insert(more.begin(), more.end());
        return each;
    }();
    return all;
}

const std::map<std::string, TestChannel::Command> &TestChannel::makingCommands()
{
    static const std::map<std::string, Command> all{
        {"makeChannel", [](TestChannel &c) { return c.makeWithListener(), done; }},
        {"makeProgramChannel", [](TestChannel &c) { return c.makeWithProgram(TQ_KRV::TCP_IF), done; }},
        {"makeSerialChannel", [](TestChannel &c) { return c.makeWithProgram(TQ_KRV::FPDP_SERIAL_IF), done; }},
        {"makeXgChannel", [](TestChannel &c) { return c.makeWithProgram(TQ_KRV::TQXG_IF), done; }},
        {"makeChannelOnTakenPort", [](TestChannel &c) { return c.makeOnTakenPort(), done; }},
        {"hangUp", [](TestChannel &c) { return c.listener->hangUp(), done; }},
        {"takeNoRecordings", [](TestChannel &c) { return c.channel->setRecordFlag(false), done; }},
        {"wantHighRate", [](TestChannel &c) { return c.channel->setRequestedSampleRate(beyondTheClass, 2), done; }},
    };
    return all;
}

const std::map<std::string, TestChannel::Command> &TestChannel::programCommands()
{
    const auto answering = [](const char *operation, bool value) {
        return [=](TestChannel &c) { return c.program->answer(operation, value), done; };
    };
    static const std::map<std::string, Command> all{
        {"beBusy", answering("isAvailableForRecord", false)},
        {"beBusyForReplay", answering("isAvailableForReplay", false)},
        {"beFree", answering("isAvailableForReplay", true)},
        {"connectNobody", answering("connectForReplay", false)},
        {"startNoXgReplay", answering("startXgReplay", false)},
        {"nameNoSource",
         [](TestChannel &c) {
             c.nameSource(TQ_KRV::TCP_IF, 0);
             c.program->sources.length(0);
             return c.program->answer("connectForRecord", true), done;
         }},
        {"nameSerialSource", [](TestChannel &c) { return c.nameSource(TQ_KRV::FPDP_SERIAL_IF, 1), done; }},
        {"nameManySources", [](TestChannel &c) { return c.nameSource(TQ_KRV::TCP_IF, 2), done; }},
        {"endProgram", [](TestChannel &c) { return c.endProgram(), done; }},
    };
    return all;
}

std::map<std::string, TestChannel::Command> TestChannel::refusalCommands()
{
    std::map<std::string, Command> all;
    for (std::size_t kind = 0; kind < refusals.size(); ++kind)
        all["refuseBy_" + std::string(refusals[kind])] = [kind](TestChannel &c) {
            for (const char *operation : {"connectForReplay", "connectForRecord"})
                c.program->trouble.plant(operation, [kind] {
                    throw ChanMan::exChanMan(static_cast<ChanMan::eChanManKind>(kind), "so it is");
                });
            return done;
        };
    all["refuseToStop"] = [](TestChannel &c) {
        c.program->trouble.plant("stoppingDataTransfer", [] { throw ChanMan::exChanMan(ChanMan::IPC_Not_Stopped, ""); });
        return done;
    };
    all["refuseToDisconnect"] = [](TestChannel &c) {
        c.program->trouble.plant("stoppingDataTransfer", {});
        c.program->trouble.plant("disconnect", [] { throw ChanMan::exChanMan(ChanMan::Unable_To_Disconnect, ""); });
        return done;
    };
    all["refuseNothing"] = [](TestChannel &c) {
        for (const char *operation : {"connectForReplay", "connectForRecord"})
            c.program->trouble.plant(operation, {});
        return done;
    };
    return all;
}

const std::map<std::string, TestChannel::Command> &TestChannel::recordingCommands()
{
    static const std::map<std::string, Command> all{
        {"startRecording", [](TestChannel &c) { return c.startRecording(); }},
        {"stopRecording", [](TestChannel &c) { return c.numberOf([&c] { c.channel->stopRecording(L""); }); }},
        {"recordAnew", // on another channel, since only the first failure of each is told
         [](TestChannel &c) {
             c.makeWithListener();
             return c.startRecording();
         }},
        {"reportNoSession",
         [](TestChannel &c) {
             c.channel->errorOccured(TQ_KRV::cfCREATE_RECORDING_SESSION_FAILED);
             return c.shownFailure();
         }},
        {"shownFailure", [](TestChannel &c) { return c.shownFailure(); }},
    };
    return all;
}

#include "tests/installation/manager/fakesessions.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

namespace
{

constexpr CORBA::ULong linkId = 7;
constexpr quint64 pieceBytes = 500;

int connectedSocket(const LLDCmodule::struConnectionParams &params)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(params.port));
    address.sin_addr.s_addr = htonl(params.address);
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return descriptor;
    ::close(descriptor);
    throw LLDCmodule::exLLDC(LLDCmodule::ekConnFailed, "nobody listens there");
}

} // namespace

FakeReplaySession::FakeReplaySession(std::shared_ptr<FakeRecord> record, std::shared_ptr<Trouble> trouble)
    : record(std::move(record)), trouble(std::move(trouble))
{
    thread = std::thread([this] { run(); });
}

FakeReplaySession::~FakeReplaySession()
{
    finish();
    thread.join();
    if (socket >= 0)
        ::close(socket);
}

void FakeReplaySession::setReplayBegin(CORBA::ULongLong newBegin)
{
    trouble->meet("setReplayBegin");
    const std::scoped_lock lock(mutex);
    begin = position = newBegin;
}

void FakeReplaySession::setReplayEnd(CORBA::ULongLong newEnd)
{
    if (newEnd > record->size)
        throw TQ_KORVE::exKorve(TQ_KORVE::ekINVALID_VALUE, "beyond the end");
    const std::scoped_lock lock(mutex);
    end = newEnd;
}

CORBA::ULong FakeReplaySession::setNoOfReplays(CORBA::ULong count)
{
    const std::scoped_lock lock(mutex);
    left = count;
    forEver = count == 0;
    return count;
}

CORBA::ULongLong FakeReplaySession::getCurrentFilePosition()
{
    trouble->meet("getCurrentFilePosition");
    const std::scoped_lock lock(mutex);
    return position;
}

void FakeReplaySession::setCurrentFilePosition(CORBA::ULongLong newPosition)
{
    const std::scoped_lock lock(mutex);
    position = newPosition;
}

void FakeReplaySession::endReplaySession()
{
    trouble->meet("endReplaySession");
    finish();
}

void FakeReplaySession::finish()
{
    const std::scoped_lock lock(mutex);
    over = true;
    record->become(TQ_KORVE::rsIDLE);
    changed.notify_all();
}

void FakeReplaySession::endConnection(CORBA::ULong)
{
    trouble->meet("endConnection");
    const std::scoped_lock lock(mutex);
    if (playing)
        record->become(TQ_KORVE::rsREADY_FOR_REPLAY);
    playing = false;
}

LLDCmodule::struConnectionParams
FakeReplaySession::waitForConnectionOnIf(const LLDCmodule::struConnectionParams &params, CORBA::ULong)
{
    trouble->meet("waitForConnectionOnIf");
    if (params.interfaceKind != LLDCmodule::ifTCP && params.interfaceKind != LLDCmodule::ifUDP)
        throw LLDCmodule::exLLDC(LLDCmodule::ekIllegalIf, "neither TCP nor UDP");
    LLDCmodule::struConnectionParams made = params;
    if (params.address != 0)
        socket = connectedSocket(params);
    else
        made = {params.interfaceKind, 0x7f000001, 5000, 0};
    made.parameter = linkId;
    return made;
}

void FakeReplaySession::startDataTransfer(CORBA::ULong id)
{
    trouble->meet("startDataTransfer");
    if (id != linkId)
        throw LLDCmodule::exLLDC(LLDCmodule::ekWrongSequence, "no such link");
    const std::scoped_lock lock(mutex);
    playing = true;
    record->become(TQ_KORVE::rsREPLAYING);
    changed.notify_all();
}

void FakeReplaySession::stopDataTransfer(CORBA::ULong)
{
    trouble->meet("stopDataTransfer");
    const std::scoped_lock lock(mutex);
    playing = false;
    record->become(TQ_KORVE::rsREADY_FOR_REPLAY);
}

void FakeReplaySession::run()
{
    std::unique_lock lock(mutex);
    while (!over) {
        changed.wait(lock, [this] { return playing || over; });
        if (!over && !sendPiece()) {
            playing = false;
            over = true;
            record->become(TQ_KORVE::rsIDLE);
        }
        changed.wait_for(lock, std::chrono::milliseconds(2), [this] { return over; }); // its own rate
    }
}

/// False at the end of the last pass.
bool FakeReplaySession::sendPiece()
{
    const quint64 count = std::min(pieceBytes, end - position);
    const std::string piece(count, 's');
    if (socket >= 0 && ::send(socket, piece.data(), piece.size(), MSG_NOSIGNAL) < 0) {
        playing = false;
        record->become(TQ_KORVE::rsREADY_FOR_REPLAY); // as when it is paused
        return true;
    }
    position += count;
    if (position < end)
        return true;
    if (!forEver && --left == 0)
        return false;
    position = begin;
    return true;
}

void FakeRecordingSession::endRecordingSession(const TQ_KORVE::wideText &comment)
{
    trouble->meet("endRecordingSession");
    const std::scoped_lock lock(record->mutex);
    record->status = TQ_KORVE::rsIDLE;
    record->comment.clear();
    for (CORBA::ULong position = 0; position < comment.length(); ++position)
        record->comment += static_cast<char>(comment[position]);
}

CORBA::ULong FakeRecordingSession::setupNetworkServerEx(CORBA::ULong, CORBA::ULong, CORBA::UShort)
{
    trouble->meet("setupNetworkServerEx");
    record->become(TQ_KORVE::rsRECORDING);
    return listeningPort;
}

CORBA::ULong FakeRecordingSession::connectToIf(const LLDCmodule::struConnectionParams &params, CORBA::ULong)
{
    trouble->meet("connectToIf");
    if (params.interfaceKind != LLDCmodule::ifTCP)
        throw LLDCmodule::exLLDC(LLDCmodule::ekIllegalIf, "not TCP");
    record->become(TQ_KORVE::rsRECORDING);
    return record->connectionId;
}

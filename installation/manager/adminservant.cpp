#include "installation/manager/adminservant.h"

#include "installation/contracts/bookmarks.hh"
#include "installation/manager/bookmarklist.h"
#include "installation/manager/recorddescription.h"

#include "korvebase/corbatoclientconverter.h"

#include "coresupport/trace.h"
#include "objectbase/exceptions.h"

#include <arpa/inet.h>

namespace installation
{

namespace
{

namespace ToClient = KorveCommon::CorbaToClientConverter;
using TQ_KORVE::exKorve;

constexpr const char *sourceName = "installation/manager/adminservant";

constexpr CORBA::ULong unknownDevice = 500;
constexpr CORBA::ULong unreachableDevice = 502;

constexpr CORBA::ULong numberOf(TQ_KORVE::eKorveKind kind)
{
    return 10000 + static_cast<CORBA::ULong>(kind);
}

CORBA::ULong failed(const char *operation, const char *deviceId, CORBA::ULong number, const char *reason)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 for device %2 failed: %3")
            .arg(QLatin1String(operation), QString::fromUtf8(deviceId), QString::fromUtf8(reason));
    });
    return number;
}

TQ_KORVE::seqFILE_PART toDeviceParts(const TQ_KRV::seqCopySection &sections)
{
    TQ_KORVE::seqFILE_PART parts(sections.length());
    parts.length(sections.length());
    for (CORBA::ULong position = 0; position < sections.length(); ++position)
        parts[position] = {sections[position].firstPosition, sections[position].lastPosition};
    return parts;
}

TQ_KORVE::eFFT_WINDOWING_MODES toDeviceWindow(TQ_KRV::eFFT_WINDOWING_MODES window)
{
    switch (window) {
    case TQ_KRV::wmRectangle:
        return TQ_KORVE::wmRectangle;
    case TQ_KRV::wmHamming:
        return TQ_KORVE::wmHamming;
    case TQ_KRV::wmHanning:
        return TQ_KORVE::wmHanning;
    case TQ_KRV::wmKaiser:
        return TQ_KORVE::wmKaiser;
    case TQ_KRV::wmBlackman:
        return TQ_KORVE::wmBlackman;
    }
    throw exKorve(TQ_KORVE::ekINVALID_VALUE, "no such window"); // only from a caller within the process
}

/// The device takes the address as a number.
CORBA::ULong addressNumber(const char *ipAddress)
{
    in_addr address{};
    if (::inet_pton(AF_INET, ipAddress, &address) != 1)
        throw exKorve(TQ_KORVE::ekINVALID_VALUE, "not an IPv4 address");
    return ntohl(address.s_addr);
}

} // namespace

AdminServant::AdminServant(std::shared_ptr<const DeviceDirectory> directory, std::chrono::milliseconds callLimit,
                           RecordListener recordListener)
    : directory(std::move(directory)), callLimit(callLimit), recordListener(std::move(recordListener))
{
}

CORBA::ULong AdminServant::removeHistoryEntry(const char *deviceId, const char *recordId, CORBA::ULongLong timestamp)
{
    return change("removeHistoryEntry", deviceId,
                  [&](TQ_KORVE::IF_Control_ptr recorder) { recorder->removeHistoryEntry(recordId, timestamp); });
}

CORBA::ULong AdminServant::addHistory(const char *deviceId, const char *recordId, const CORBA::WChar *text)
{
    return change("addHistory", deviceId,
                  [&](TQ_KORVE::IF_Control_ptr recorder) { recorder->addHistory(recordId, toDeviceText(text)); });
}

CORBA::ULong AdminServant::copyRecord(const char *deviceId, const char *recordId,
                                      const TQ_KRV::seqCopySection &sections, const CORBA::WChar *name,
                                      CORBA::String_out newRecordId)
{
    CORBA::String_var made = CORBA::string_dup(""); // an out-parameter would not let go of what it has
    const CORBA::ULong number = change("copyRecord", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        made = recorder->copyRecord(recordId, toDeviceParts(sections), toDeviceText(name));
    });
    newRecordId = made._retn();
    return number;
}

CORBA::ULong AdminServant::setRecordComment(const char *deviceId, const char *recordId, const CORBA::WChar *comment)
{
    return change("setRecordComment", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        recorder->setRecordComment(recordId, toDeviceText(comment));
    });
}

CORBA::ULong AdminServant::setRecordDeletableFlag(const char *deviceId, const char *recordId, CORBA::Boolean deletable)
{
    return change("setRecordDeletableFlag", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        if (deletable)
            recorder->setDeletableFlagOfRecord(recordId);
        else
            recorder->clearDeletableFlagOfRecord(recordId);
    });
}

void AdminServant::addBookmarks(const char *deviceId, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks)
{
    changeBookmarks("addBookmarks", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        addBookmarksAt(recorder, recordId, bookmarks, callLimit);
    });
}

void AdminServant::deleteBookmarks(const char *deviceId, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks)
{
    changeBookmarks("deleteBookmarks", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        removeBookmarksAt(recorder, recordId, bookmarks, callLimit);
    });
}

CORBA::ULong AdminServant::getDeviceTime(const char *deviceId, CORBA::ULongLong &time, CORBA::Boolean &synchronized)
{
    time = 0;
    synchronized = false;
    return ask("getDeviceTime", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        synchronized = recorder->isSynchronizedByNTP();
        time = recorder->getSystemTime();
    });
}

CORBA::ULong AdminServant::setDeviceTime(const char *deviceId, CORBA::ULongLong time)
{
    return change("setDeviceTime", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) { recorder->setSystemTime(time); });
}

CORBA::ULong AdminServant::getOverviewSpectrumStreamed(const char *deviceId, const char *recordId,
                                                       CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition,
                                                       CORBA::ULongLong lineCount, CORBA::ULong fftSize,
                                                       TQ_KRV::eFFT_WINDOWING_MODES window, const char *ipAddress,
                                                       CORBA::UShort port)
{
    return change("getOverviewSpectrumStreamed", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        recorder->getOverviewSpectrumStreamed(recordId, startPosition, stopPosition, lineCount, fftSize,
                                              toDeviceWindow(window), addressNumber(ipAddress), port);
    });
}

CORBA::ULong AdminServant::getRecord(const char *deviceId, const char *recordId, TQ_KRV::struRECORD_DATA_out record)
{
    TQ_KRV::struRECORD_DATA_var found;
    const CORBA::ULong number = ask("getRecord", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        found = ToClient::toCorbaRecordData(wholeRecord(recorder, recordId));
    });
    if (number == numberOf(TQ_KORVE::ekINVALID_RECORD_ID))
        throw TQ_KRV::IF_KORVE_Admin::exAdmin(TQ_KRV::IF_KORVE_Admin::Invalid_RecordId, recordId);
    record = number == 0 ? found._retn() : ToClient::dummyCorbaRecordData();
    return number == numberOf(TQ_KORVE::ekCONNECTION_FAILURE) ? unreachableDevice : number;
}

CORBA::ULong AdminServant::requestRecordDataDetail(const char *deviceId, const char *recordId)
{
    return ask("requestRecordDataDetail", deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        wholeRecord(recorder, recordId); // what cannot be read has no details to look at
        if (recordListener)
            recordListener(QString::fromUtf8(deviceId), QString::fromUtf8(recordId));
    });
}

CORBA::Boolean AdminServant::deleteRecord(const char *deviceId, const char *recordId)
{
    CORBA::Boolean isDeleted = false;
    change("deleteRecord", deviceId,
           [&](TQ_KORVE::IF_Control_ptr recorder) { isDeleted = recorder->removeRecord(recordId); });
    return isDeleted;
}

/// For what must not be told as failed when it may have been done.
template <typename Request>
CORBA::ULong AdminServant::change(const char *operation, const char *deviceId, Request request) const
{
    bool mayBeDone = false;
    const CORBA::ULong number = ask(operation, deviceId, [&](TQ_KORVE::IF_Control_ptr recorder) {
        try {
            request(recorder);
        } catch (const CORBA::SystemException &error) {
            mayBeDone = error.completed() != CORBA::COMPLETED_NO;
            throw;
        }
    });
    if (mayBeDone)
        throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE);
    return number;
}

/// These operations have no number to give.
template <typename Request>
void AdminServant::changeBookmarks(const char *operation, const char *deviceId, Request request) const
{
    try {
        const CORBA::ULong number = change(operation, deviceId, request);
        if (number == numberOf(TQ_KORVE::ekCONNECTION_FAILURE))
            throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO);
        if (number != 0)
            throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
    } catch (const KORVE_INSTALLATION::exPartlyDone &partly) {
        failed(operation, deviceId, numberOf(partly.kind), partly.text);
        throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_MAYBE);
    }
}

template <typename Request>
CORBA::ULong AdminServant::ask(const char *operation, const char *deviceId, Request request) const
{
    const auto device = directory->find(QString::fromUtf8(deviceId));
    if (!device)
        return failed(operation, deviceId, unknownDevice, "there is no such device");
    const CORBA::ULong unreachable = numberOf(TQ_KORVE::ekCONNECTION_FAILURE);
    if (CORBA::is_nil(device->control))
        return failed(operation, deviceId, unreachable, "the device has not been found");
    try {
        request(device->control.in());
        return 0;
    } catch (const exKorve &refusal) {
        return failed(operation, deviceId, numberOf(refusal.kind), refusal.text);
    } catch (const CORBA::SystemException &error) {
        return failed(operation, deviceId, unreachable, error._name());
    } catch (const REPORTGENERATOR::ReportException &error) {
        return failed(operation, deviceId, numberOf(TQ_KORVE::ekRECORD_CORRUPTED), error.what());
    }
}

} // namespace installation

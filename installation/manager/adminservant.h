#pragma once

#include "installation/manager/devicedirectory.h"

#include "idl/korvemanager.hh"

#include <chrono>
#include <functional>
#include <memory>

namespace installation
{

/// The administration of records: each operation is handed on to the recorder that has the record.
///
/// Numbers: 0, 500 for an unknown device, or 10000 plus the kind of the recorder's `exKorve`. Its kinds also say what
/// the manager finds itself: `ekINVALID_VALUE` a text that is no address, `ekCONNECTION_FAILURE` a recorder that does
/// not answer and has done nothing, `ekRECORD_CORRUPTED` a record that the object model refuses. `getRecord` gives 502
/// for a recorder that does not answer instead. `requestRecordDataDetail` reads the record before it
/// tells that there is something to look at. The two operations on bookmarks have no number to give: they raise
/// `CORBA::TRANSIENT` for a recorder that does not answer and `CORBA::BAD_PARAM` for everything else; only the latter
/// may be completed, when some of the bookmarks have been changed and others refused.
/// What acts, and what a recorder that went silent may have done, raises `CORBA::COMM_FAILURE`, which may be completed.
/// Thread: any; each question to a recorder is limited.
class AdminServant : public POA_TQ_KRV::IF_KORVE_Admin
{
public:
    /// Hears that the details of a record are to be looked at, on an ORB thread.
    using RecordListener = std::function<void(const QString &device, const QString &record)>;

    AdminServant(std::shared_ptr<const DeviceDirectory> directory, std::chrono::milliseconds callLimit,
                 RecordListener recordListener);

    CORBA::ULong removeHistoryEntry(const char *deviceId, const char *recordId, CORBA::ULongLong timestamp) override;
    CORBA::ULong addHistory(const char *deviceId, const char *recordId, const CORBA::WChar *text) override;
    CORBA::ULong copyRecord(const char *deviceId, const char *recordId, const TQ_KRV::seqCopySection &sections,
                            const CORBA::WChar *name, CORBA::String_out newRecordId) override;
    CORBA::ULong setRecordComment(const char *deviceId, const char *recordId, const CORBA::WChar *comment) override;
    CORBA::ULong setRecordDeletableFlag(const char *deviceId, const char *recordId, CORBA::Boolean deletable) override;
    /// Adds all that can be added, also behind one that cannot.
    void addBookmarks(const char *deviceId, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks) override;
    void deleteBookmarks(const char *deviceId, const char *recordId, const TQ_KRV::seqBookmarks &bookmarks) override;
    CORBA::ULong getDeviceTime(const char *deviceId, CORBA::ULongLong &time, CORBA::Boolean &synchronized) override;
    CORBA::ULong setDeviceTime(const char *deviceId, CORBA::ULongLong time) override;
    CORBA::ULong getOverviewSpectrumStreamed(const char *deviceId, const char *recordId, CORBA::ULongLong startPosition,
                                             CORBA::ULongLong stopPosition, CORBA::ULongLong lineCount,
                                             CORBA::ULong fftSize, TQ_KRV::eFFT_WINDOWING_MODES window,
                                             const char *ipAddress, CORBA::UShort port) override;
    /// Raises `exAdmin` for an unknown record. With a number other than 0 the record is an empty one.
    CORBA::ULong getRecord(const char *deviceId, const char *recordId, TQ_KRV::struRECORD_DATA_out record) override;
    CORBA::ULong requestRecordDataDetail(const char *deviceId, const char *recordId) override;
    CORBA::Boolean deleteRecord(const char *deviceId, const char *recordId) override;

private:
    template <typename Request> CORBA::ULong change(const char *operation, const char *deviceId, Request request) const;
    template <typename Request>
    void changeBookmarks(const char *operation, const char *deviceId, Request request) const;
    template <typename Request> CORBA::ULong ask(const char *operation, const char *deviceId, Request request) const;

    const std::shared_ptr<const DeviceDirectory> directory;
    const std::chrono::milliseconds callLimit;
    const RecordListener recordListener;
};

} // namespace installation

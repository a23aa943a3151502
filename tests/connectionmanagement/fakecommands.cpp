#include "tests/connectionmanagement/fakecommands.h"

#include <sstream>

using namespace TQ_KRV;

namespace
{
std::string narrow(const CORBA::WChar *text)
{
    std::ostringstream out;
    for (; *text; ++text) {
        if (*text < 128)
            out << static_cast<char>(*text);
        else
            out << '<' << std::hex << static_cast<unsigned>(*text) << '>';
    }
    return out.str();
}

template <typename... Parts> std::string joined(const Parts &...parts)
{
    std::ostringstream out;
    const char *separator = "";
    ((out << separator << parts, separator = " "), ...);
    return out.str();
}

std::string textOf(const seqBookmarks &bookmarks)
{
    std::string all;
    for (CORBA::ULong i = 0; i < bookmarks.length(); ++i)
        all += '[' + joined(bookmarks[i].timestamp, narrow(bookmarks[i].bookmark)) + ']';
    return all;
}

std::string textOf(const seqCopySection &sections)
{
    std::string all;
    for (CORBA::ULong i = 0; i < sections.length(); ++i)
        all += '[' + joined(sections[i].firstPosition, sections[i].lastPosition) + ']';
    return all;
}
} // namespace

CORBA::ULong FakeAdmin::removeHistoryEntry(const char *deviceId, const char *recordId, CORBA::ULongLong timestamp)
{
    return answer(joined("removeHistoryEntry", deviceId, recordId, timestamp));
}

CORBA::ULong FakeAdmin::addHistory(const char *deviceId, const char *recordId, const CORBA::WChar *text)
{
    return answer(joined("addHistory", deviceId, recordId, narrow(text)));
}

CORBA::ULong FakeAdmin::copyRecord(const char *deviceId, const char *recordId, const seqCopySection &sections,
                                   const CORBA::WChar *name, CORBA::String_out newRecordId)
{
    newRecordId = CORBA::string_dup("R-new");
    return answer(joined("copyRecord", deviceId, recordId, textOf(sections), narrow(name)));
}

CORBA::ULong FakeAdmin::setRecordComment(const char *deviceId, const char *recordId, const CORBA::WChar *comment)
{
    return answer(joined("setRecordComment", deviceId, recordId, narrow(comment)));
}

CORBA::ULong FakeAdmin::setRecordDeletableFlag(const char *deviceId, const char *recordId, CORBA::Boolean deletable)
{
    return answer(joined("setRecordDeletableFlag", deviceId, recordId, deletable));
}

void FakeAdmin::addBookmarks(const char *deviceId, const char *recordId, const seqBookmarks &bookmarks)
{
    answer(joined("addBookmarks", deviceId, recordId, textOf(bookmarks)));
}

void FakeAdmin::deleteBookmarks(const char *deviceId, const char *recordId, const seqBookmarks &bookmarks)
{
    answer(joined("deleteBookmarks", deviceId, recordId, textOf(bookmarks)));
}

CORBA::ULong FakeAdmin::getDeviceTime(const char *deviceId, CORBA::ULongLong &time, CORBA::Boolean &synchronized)
{
    time = deviceTime;
    synchronized = true;
    return answer(joined("getDeviceTime", deviceId));
}

CORBA::ULong FakeAdmin::setDeviceTime(const char *deviceId, CORBA::ULongLong time)
{
    return answer(joined("setDeviceTime", deviceId, time));
}

CORBA::ULong FakeAdmin::getOverviewSpectrumStreamed(const char *deviceId, const char *recordId,
                                                    CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition,
                                                    CORBA::ULongLong lineCount, CORBA::ULong fftSize,
                                                    eFFT_WINDOWING_MODES window, const char *ipAddress,
                                                    CORBA::UShort port)
{
    return answer(joined("getOverviewSpectrumStreamed", deviceId, recordId, startPosition, stopPosition, lineCount,
                         fftSize, window, ipAddress, port));
}

CORBA::ULong FakeAdmin::getRecord(const char *deviceId, const char *recordId, struRECORD_DATA_out found)
{
    found = new struRECORD_DATA(record);
    return answer(joined("getRecord", deviceId, recordId));
}

CORBA::ULong FakeAdmin::requestRecordDataDetail(const char *deviceId, const char *recordId)
{
    return answer(joined("requestRecordDataDetail", deviceId, recordId));
}

CORBA::Boolean FakeAdmin::deleteRecord(const char *deviceId, const char *recordId)
{
    return answer(joined("deleteRecord", deviceId, recordId)) != 0;
}

CORBA::ULong FakeReplay::StartReplay(const char *deviceId, const char *recordId, eDATARATE_CLASS rate,
                                     CORBA::ULongLong start, CORBA::ULongLong stop, CORBA::ULong count)
{
    return answer(joined("StartReplay", deviceId, recordId, rate, start, stop, count));
}

CORBA::ULong FakeReplay::StartReplayReceivers(const char *deviceId, const char *recordId, eDATARATE_CLASS rate,
                                              CORBA::ULongLong start, CORBA::ULongLong stop, CORBA::ULong count,
                                              interfaceTypeEnum interfaceType)
{
    return answer(joined("StartReplayReceivers", deviceId, recordId, rate, start, stop, count, interfaceType));
}

CORBA::ULong FakeReplay::PauseReplay(const char *deviceId, const char *recordId)
{
    return answer(joined("PauseReplay", deviceId, recordId));
}

CORBA::ULong FakeReplay::ContinueReplay(const char *deviceId, const char *recordId)
{
    return answer(joined("ContinueReplay", deviceId, recordId));
}

CORBA::ULong FakeReplay::StopReplay(const char *deviceId, const char *recordId)
{
    return answer(joined("StopReplay", deviceId, recordId));
}

#include "connectionmanagement/errorcatalogue.h"

#include "common/errornumber.h"
#include "common/parsecorbauserexception.h"
#include "connectionmanagement/recordlisterror.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "idl/lumbalandatacom.hh"
#include "korvebase/errorflows.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <limits>

namespace KorveManagement
{
namespace
{
using KorveCommon::ToolbarHelper;
using Table = ErrorCatalogue::Table;
using NamedTable = ErrorCatalogue::NamedTable;

namespace flow = korve::errorflow;
namespace number = korve::errornumber;
namespace recordlist = KorveGUI::recordlist;

struct Catalogued {
    NamedTable named;
    const korve::ErrorFlow *sentences; ///< null: one for all numbers
};

const std::array catalogued{
    Catalogued{{"Admin", TraceError::Admin}, &flow::admin},
    Catalogued{{"Setup", TraceError::Setup}, &flow::setup},
    Catalogued{{"FirmwareVersion", TraceError::FirmwareVersion}, nullptr},
    Catalogued{{"AddBookmark", TraceError::AddBookmark}, &flow::addBookmark},
    Catalogued{{"GetBookmark", TraceError::GetBookmark}, &flow::getBookmark},
    Catalogued{{"RemoveBookmark", TraceError::RemoveBookmark}, &flow::removeBookmark},
    Catalogued{{"Channel", TraceError::Channel}, &flow::channel},
    Catalogued{{"StartReplay", TraceError::StartReplay}, &flow::startReplay},
    Catalogued{{"ControlReplay", TraceError::ControlReplay}, &flow::controlReplay},
    Catalogued{{"StartRecording", TraceError::StartRecording}, &flow::startRecording},
    Catalogued{{"StopRecording", TraceError::StopRecording}, &flow::stopRecording},
    Catalogued{{"History", TraceError::History}, &flow::history},
    Catalogued{{"ToolbarActions", ToolbarHelper::ActionErrors}, &flow::toolbarActions},
    Catalogued{{"ToolbarRecords", ToolbarHelper::RecordErrors}, &flow::toolbarRecords},
};

/// What a number means where its name, if it has one, does not say it.
struct Origin {
    unsigned long first;
    unsigned long last;
    const char *text;
};

constexpr std::array origins{
    Origin{number::success, number::success, "success"},
    Origin{3, 3, "a client: it has no interface of the manager"},
    Origin{number::noInterface, number::noInterface, "the command handler: the manager has not given its interface"},
    Origin{27, 27, "the manager: both positions of a replay are 0"},
    Origin{28, 28, "the manager: both positions of a replay are the same"},
    Origin{29, 29, "the manager: a replay begins behind its end"},
    Origin{50, 50, "a client: the reference of a device leads nowhere"},
    Origin{number::serverNotAvailable, number::serverNotAvailable,
           "the command handler: there is no connection to a manager"},
    Origin{recordlist::managerNotReachable, recordlist::managerNotReachable,
           "a list of records: there is no connection to a manager, or its answer did not come in time"},
    Origin{recordlist::deviceUnknown, recordlist::deviceUnknown, "a list of records: the manager knows no such device"},
    Origin{recordlist::refused, recordlist::refused,
           "a list of records: the manager cannot make it, such as when the device is away"},
    Origin{recordlist::failed, recordlist::failed, "a list of records: the call fails in another way"},
    Origin{number::transient, number::transient,
           "the ORB, CORBA::TRANSIENT: no connection, or no answer within the time-out"},
    Origin{number::systemException, number::systemException,
           "the ORB, another system exception, such as CORBA::COMM_FAILURE for a connection that breaks during a call"},
    Origin{number::unknownUserException, number::unknownUserException,
           "the decoders: an exception of a type or kind that they do not know"},
    Origin{250, 252, "a client: the naming service knows no channel manager"},
    Origin{253, 255, "a client: the central object service fails"},
    Origin{300, 300, "a client: there is no channel"},
    Origin{500, 500, "the manager: it knows no such device"},
    Origin{501, 501, "the manager: no record has this id"},
    Origin{502, 502, "the manager: the device is not reachable"},
    Origin{700, 700, "the manager: a channel needs another interface"},
    Origin{701, 701, "the manager: it does not know the data-rate class"},
    Origin{702, 702, "the manager: it does not know the data format"},
    Origin{703, 703, "the manager: there are as many channels as there can be"},
    Origin{704, 704, "the manager: there is no such device, or none is available"},
    Origin{760, 760, "the manager: there is no replay to be stopped"},
    Origin{761, 761, "the manager: no channel is enabled for replay"},
    Origin{766, 766, "the manager: the device has given no replay session, such as for an unknown record"},
    Origin{767, 767, "the manager: there is nothing to continue, or it cannot be"},
    Origin{768, 768, "the manager: the record is busy"},
    Origin{769, 769, "the manager: it knows no such device"},
    Origin{770, 770, "the manager: the channel manager is not reachable"},
    Origin{771, 771, "the manager: there is no replay to pause"},
    Origin{780, 780, "the manager: no channel has an XG interface"},
    Origin{781, 781, "the manager: the device has told a wrong MAC address"},
    Origin{800, 800, "the manager: the channel is recording"},
    Origin{801, 801, "the manager: the channel is replaying"},
    Origin{802, 802, "the manager: the channel is not active"},
    Origin{803, 803, "the manager: no device has room for a recording"},
    Origin{804, 804, "the manager: the channel may not use the device"},
    Origin{805, 805, "the manager: a value is out of range"},
    Origin{850, 850, "the manager: the channel is not ready for recording"},
    Origin{851, 851, "the manager: it could not make a receiver of notifications"},
    Origin{852, 853, "the manager: it could not have a recording session of the device"},
    Origin{854, 854, "the manager: its lists of devices differ"},
    Origin{855, 855, "the manager: the device has told an invalid connection"},
    Origin{number::unspecified, number::unspecified,
           "the command handler: an exception that the operation does not declare"},
    Origin{20003, 20003, "a device of an older kind: no record has this id"},
};

/// The scoped name of the kind of @p Exception that has this number; empty for none.
template <typename Exception, typename Decoder, typename Kind> QString nameOfKind(unsigned long id, Kind last)
{
    for (int kind = 0; kind <= last; ++kind) {
        const Exception exception(static_cast<Kind>(kind), "");
        if (Decoder::convertException(exception) == id)
            return Decoder::GetException(exception)
                .remove(QLatin1String("User exception: "))
                .section(QLatin1String(": "), 0, 0);
    }
    return {};
}

QString nameOfKind(unsigned long id)
{
    using Device = KorveDevice::ParseCorbaUserException;
    using Manager = KorveChannel::ParseCorbaUserException;
    using TQ_KRV::IF_KORVE_Admin, TQ_KRV::IF_KRV_c_Chan, TQ_KRV::IF_KRV_c_ChanMan;
    for (const QString &name : {nameOfKind<TQ_KORVE::exKorve, Device>(id, TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS),
                                nameOfKind<LLDCmodule::exLLDC, Device>(id, LLDCmodule::ekDataRateUnavailable),
                                nameOfKind<TQ_KRV::exGen, Manager>(id, TQ_KRV::No_Korve_Device_Available),
                                nameOfKind<IF_KRV_c_ChanMan::exChanMan, Manager>(id, IF_KRV_c_ChanMan::Fault),
                                nameOfKind<IF_KRV_c_Chan::exChan, Manager>(id, IF_KRV_c_Chan::Range_Error),
                                nameOfKind<IF_KORVE_Admin::exAdmin, Manager>(id, IF_KORVE_Admin::Invalid_RecordId)})
        if (!name.isEmpty())
            return name;
    return {};
}

bool isOfAToolbar(unsigned long id)
{
    return flow::toolbarActions.knows(id) || flow::toolbarRecords.knows(id);
}
} // namespace

const QVector<NamedTable> &ErrorCatalogue::tables()
{
    static const QVector<NamedTable> tables = [] {
        QVector<NamedTable> all;
        for (const Catalogued &row : catalogued)
            all << row.named;
        return all;
    }();
    return tables;
}

bool ErrorCatalogue::isKnown(unsigned long id, const Table &table)
{
    const auto row = std::ranges::find(catalogued, table, [](const Catalogued &each) { return each.named.table; });
    return row != catalogued.end() && row->sentences && row->sentences->knows(id);
}

QString ErrorCatalogue::sentence(unsigned long id, const Table &table, const QString &text)
{
    if (const auto *const type = std::get_if<TraceError::MethodCallType>(&table))
        return TraceError::toText(id, *type, text);
    if (id > std::numeric_limits<unsigned int>::max())
        return {};
    return ToolbarHelper::Instance().ErrorId2Text(static_cast<unsigned int>(id),
                                                  std::get<ToolbarHelper::errorIdContext>(table));
}

QString ErrorCatalogue::origin(unsigned long id)
{
    QStringList words{nameOfKind(id)};
    for (const Origin &origin : origins)
        if (id >= origin.first && id <= origin.last)
            words << QLatin1String(origin.text);
    words.removeAll(QString());
    if (words.isEmpty() && isOfAToolbar(id)) // which numbers its own troubles, also by numbers that others answer
        words << QStringLiteral("a toolbar of a client");
    return words.join(QLatin1String("; "));
}
} // namespace KorveManagement

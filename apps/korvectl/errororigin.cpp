#include "apps/korvectl/errororigin.h"

#include "common/errornumber.h"
#include "common/parsecorbauserexception.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "idl/lumbalandatacom.hh"

#include <QStringList>

#include <array>

namespace korvectl
{

namespace
{

using KorveManagement::TraceError;
namespace number = korve::errornumber;

/// Stands in no table.
constexpr unsigned long unused = 4'000'000'000;

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

QString withoutPrefix(unsigned long id, Flow flow)
{
    const QString mark = QStringLiteral("?"); // texts with and without a mark are to differ from one another
    return TraceError::toText(id, flow, mark).remove(QStringLiteral("Id: %1 : ").arg(id));
}

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
    for (const QString &name :
         {nameOfKind<TQ_KORVE::exKorve, Device>(id, TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS),
          nameOfKind<LLDCmodule::exLLDC, Device>(id, LLDCmodule::ekDataRateUnavailable),
          nameOfKind<TQ_KRV::exGen, Manager>(id, TQ_KRV::No_Korve_Device_Available),
          nameOfKind<IF_KRV_c_ChanMan::exChanMan, Manager>(id, IF_KRV_c_ChanMan::Fault),
          nameOfKind<IF_KRV_c_Chan::exChan, Manager>(id, IF_KRV_c_Chan::Range_Error),
          nameOfKind<IF_KORVE_Admin::exAdmin, Manager>(id, IF_KORVE_Admin::Invalid_RecordId)})
        if (!name.isEmpty())
            return name;
    return {};
}

} // namespace

const QVector<NamedFlow> &allFlows()
{
    static const QVector<NamedFlow> flows{{TraceError::Admin, "Admin"},
                                          {TraceError::Setup, "Setup"},
                                          {TraceError::FirmwareVersion, "FirmwareVersion"},
                                          {TraceError::AddBookmark, "AddBookmark"},
                                          {TraceError::GetBookmark, "GetBookmark"},
                                          {TraceError::RemoveBookmark, "RemoveBookmark"},
                                          {TraceError::Channel, "Channel"},
                                          {TraceError::StartReplay, "StartReplay"},
                                          {TraceError::ControlReplay, "ControlReplay"},
                                          {TraceError::StartRecording, "StartRecording"},
                                          {TraceError::StopRecording, "StopRecording"},
                                          {TraceError::History, "History"}};
    return flows;
}

Flow flowNamed(const QString &name)
{
    for (const NamedFlow &named : allFlows())
        if (name == QLatin1String(named.name))
            return named.flow;
    return TraceError::Admin;
}

bool isKnown(unsigned long id, Flow flow)
{
    // Of a firmware version there is one sentence for all numbers.
    const bool isForAll = flow == TraceError::FirmwareVersion;
    return !isForAll && withoutPrefix(id, flow) != withoutPrefix(unused, flow);
}

QString sentenceFor(unsigned long id, Flow flow, const QString &about)
{
    return isKnown(id, flow) ? TraceError::toText(id, flow, about) : originSentence(id);
}

QString originSentence(unsigned long id)
{
    const QString origin = originOf(id);
    return QStringLiteral("Id: %1 : %2").arg(
        QString::number(id), origin.isEmpty() ? QStringLiteral("a number that nothing is known of") : origin);
}

QString originOf(unsigned long id)
{
    QStringList words{nameOfKind(id)};
    for (const Origin &origin : origins)
        if (id >= origin.first && id <= origin.last)
            words << QLatin1String(origin.text);
    words.removeAll(QString());
    return words.join(QLatin1String("; "));
}

} // namespace korvectl

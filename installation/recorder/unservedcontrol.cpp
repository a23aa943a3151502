#include "installation/recorder/unservedcontrol.h"

#include "installation/recorder/devicefailure.h"

#include "coresupport/trace.h"

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/unservedcontrol";

[[noreturn]] void refuse(const char *operation)
{
    throw deviceFailure(operation, {TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE,
                                    QStringLiteral("this recorder does not offer %1").arg(QLatin1String(operation))});
}

/// For an operation that declares no exception; `CORBA::NO_IMPLEMENT` needs no declaration.
[[noreturn]] void refuseSilently(const char *operation)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("this recorder does not offer %1").arg(QLatin1String(operation)); });
    throw CORBA::NO_IMPLEMENT(0, CORBA::COMPLETED_NO);
}

} // namespace

void UnservedControl::copyRecordFromArchDev(Text, Text)
{
    refuse("copyRecordFromArchDev");
}

void UnservedControl::copyRecordFromArchDevEx(Text, Text, Receiver)
{
    refuse("copyRecordFromArchDevEx");
}

void UnservedControl::removeRecordOnArchDev(Text, Text)
{
    refuse("removeRecordOnArchDev");
}

void UnservedControl::eraseAllRecords()
{
    refuseSilently("eraseAllRecords");
}

CORBA::Boolean UnservedControl::setPasswdForArchievingUser(Text, Text)
{
    refuse("setPasswdForArchievingUser");
}

void UnservedControl::shutdown()
{
    refuseSilently("shutdown");
}

void UnservedControl::reboot()
{
    refuseSilently("reboot");
}

void UnservedControl::terminate()
{
    refuseSilently("terminate");
}

void UnservedControl::restart()
{
    refuseSilently("restart");
}

void UnservedControl::startBiteOnDemand()
{
    refuseSilently("startBiteOnDemand");
}

void UnservedControl::startBiteOnDemandEx(Receiver)
{
    refuse("startBiteOnDemandEx");
}

void UnservedControl::cancelBiteOnDemand()
{
    refuseSilently("cancelBiteOnDemand");
}

CORBA::ULong UnservedControl::getPDWcount(Text)
{
    refuse("getPDWcount");
}

void UnservedControl::getPDWs(Text, CORBA::ULong, CORBA::UShort)
{
    refuse("getPDWs");
}

CORBA::ULong UnservedControl::getInternalStatusData(CORBA::ULong, TQ_KORVE::seqOctet &)
{
    refuseSilently("getInternalStatusData");
}

} // namespace installation::recorder

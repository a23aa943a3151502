#include "installation/manager/channelmanager.h"

#include "installation/manager/channelfailure.h"
#include "installation/cco/orbaccess.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{
constexpr const char *sourceName = "installation/manager/channelmanager";
}

ChannelManager::ChannelManager(const ChannelSettings &settings, std::chrono::milliseconds limit)
{
    const CORBA::Object_var object = referenceFrom(settings.channelManager);
    if (!CORBA::is_nil(object))
        reference = withCallLimit<TQ_KRV::IF_KRV_c_ChanMan>(object, limit);
}

void ChannelManager::ask(const Calls &calls) const
{
    if (exists())
        askChannelManager([&] { calls(reference.in()); });
}

void ChannelManager::tell(const Calls &calls) const
{
    try {
        ask(calls);
    } catch (const ChannelFailure &failure) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("a channel manager was not told: %1").arg(failure.text()); });
    }
}

QString textOfReference(CORBA::Object_ptr object)
{
    if (CORBA::is_nil(object))
        return {};
    const CORBA::ORB_var orb = theOrb();
    return QString::fromLatin1(CORBA::String_var(orb->object_to_string(object)).in());
}

CORBA::Object_ptr referenceFrom(const QString &text)
{
    if (text.isEmpty())
        return CORBA::Object::_nil();
    try {
        const CORBA::ORB_var orb = theOrb();
        return orb->string_to_object(text.toLatin1().constData());
    } catch (const CORBA::SystemException &) { // a text that is damaged
        return CORBA::Object::_nil();
    }
}

} // namespace installation

#include "installation/calls/activation.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{
constexpr const char *sourceName = "installation/calls/activation";
}

Activation::Activation(PortableServer::POA_ptr poa, const std::string &key, PortableServer::Servant servant)
    : poa(PortableServer::POA::_duplicate(poa)), id(PortableServer::string_to_ObjectId(key.c_str()))
{
    const PortableServer::ServantBase_var owned(servant); // the POA takes a reference of its own
    poa->activate_object_with_id(id, servant);
    object = poa->id_to_reference(id);
}

Activation::~Activation()
{
    end();
}

void Activation::end()
{
    if (ended.exchange(true))
        return;
    try {
        poa->deactivate_object(id);
    } catch (const CORBA::Exception &e) { // the ORB has gone first
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("An object could not be deactivated: %1").arg(QLatin1String(e._name())); });
    }
}

CORBA::Object_ptr Activation::reference() const
{
    return CORBA::Object::_duplicate(object);
}

} // namespace installation

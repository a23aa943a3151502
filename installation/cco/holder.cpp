#include "installation/cco/holder.h"

#include "orbconnection/publishedendpoint.h"

namespace installation
{

Holder::Holder(const Registry::Content &content)
{
    if (const auto *reference = std::get_if<CORBA::Object_var>(&content))
        object = *reference;
    else
        address = addressIn(std::get<Registry::Values>(content));
}

Answer Holder::ask(std::chrono::milliseconds limit) const
{
    return CORBA::is_nil(object) ? askAddress(*address) : askObject(object, limit);
}

std::optional<NetworkAddress> Holder::endpoint() const
{
    if (CORBA::is_nil(object))
        return address;
    const CorbaCommon::Endpoint published = CorbaCommon::publishedEndpoint(object);
    return published.port == 0 ? std::nullopt
                               : std::optional(NetworkAddress{published.host.toStdString(), published.port});
}

std::string Holder::description() const
{
    const auto where = endpoint();
    if (!where)
        return CORBA::is_nil(object) ? "mere values" : "an object without an address";
    const std::string port = std::to_string(where->port);
    return (CORBA::is_nil(object) ? "the address " : "the object at ") + where->host + ":" + port;
}

} // namespace installation

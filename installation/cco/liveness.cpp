#include "installation/cco/liveness.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/ulmaos.h"
#include "orbconnection/publishedendpoint.h"

#include <omniORB4/minorCode.h>

#include <cerrno>
#include <charconv>

namespace installation
{

namespace
{

/// Why there is no connection to @p object.
Answer askEndpoint(CORBA::Object_ptr object)
{
    const CorbaCommon::Endpoint endpoint = CorbaCommon::publishedEndpoint(object);
    const Answer answer = askAddress({endpoint.host.toStdString(), endpoint.port});
    return answer == Answer::Lives ? Answer::Silent : answer; // the object itself has not answered
}

/// @throws CORBA::COMM_FAILURE when the connection is lost meanwhile.
Answer askOnce(CORBA::Object_ptr object)
{
    try {
        return object->_non_existent() ? Answer::Gone : Answer::Lives;
    } catch (const CORBA::COMM_FAILURE &) {
        throw;
    } catch (const CORBA::TRANSIENT &error) {
        return error.minor() == omni::TRANSIENT_ConnectFailed ? askEndpoint(object) : Answer::Silent;
    } catch (const CORBA::TIMEOUT &) {
        return Answer::Silent;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return Answer::Gone;
    } catch (const CORBA::SystemException &) {
        return Answer::Lives; // a refusal is an answer
    }
}

} // namespace

bool Silence::endsWith(Answer answer)
{
    switch (answer) {
    case Answer::Lives:
        misses = 0;
        return false;
    case Answer::Silent:
        return ++misses >= mostMisses;
    case Answer::Gone:
        return true;
    case Answer::NotAsked:
        return false;
    }
    return false;
}

std::optional<NetworkAddress> addressIn(const std::vector<std::string> &values)
{
    if (values.size() != 2 || values[0].empty())
        return std::nullopt;
    const std::string &text = values[1];
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        return std::nullopt;
    return NetworkAddress{values[0], port};
}

Answer askAddress(const NetworkAddress &address)
{
    const UlmaOS::ProbeReply reply = UlmaOS::GetInstance().probe(address.host.c_str(), address.port, 0);
    if (reply.reachable != 0)
        return Answer::Lives;
    switch (reply.errorNumber) {
    case ECONNREFUSED:
        return Answer::Gone;
    case EMFILE:
    case ENFILE:
    case ENOBUFS:
    case ENOMEM:
        return Answer::NotAsked;
    default:
        return Answer::Silent;
    }
}

Answer askObject(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    // The ORB keeps its connections to a process that has been killed. The first call on each of them fails, also when
    // another process serves the same object by now; one that nobody serves is TRANSIENT on a new connection.
    constexpr int mostDeadConnections = 8;
    const CORBA::Object_var limited = withCallLimit<CORBA::Object>(object, limit);
    for (int dead = 0; dead < mostDeadConnections; ++dead) {
        try {
            return askOnce(limited);
        } catch (const CORBA::COMM_FAILURE &) {
            continue;
        }
    }
    return Answer::Silent;
}

} // namespace installation

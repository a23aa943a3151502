#include "installation/cco/liveness.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/ulmaos.h"

#include <charconv>

namespace installation
{

namespace
{

/// @throws CORBA::COMM_FAILURE when the connection is lost meanwhile.
bool exists(CORBA::Object_ptr object)
{
    try {
        return !object->_non_existent();
    } catch (const CORBA::COMM_FAILURE &) {
        throw;
    } catch (const CORBA::TRANSIENT &) {
        return false;
    } catch (const CORBA::TIMEOUT &) {
        return false;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return false;
    } catch (const CORBA::SystemException &) {
        return true; // a refusal is an answer
    }
}

} // namespace

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

bool addressAnswers(const NetworkAddress &address)
{
    return UlmaOS::GetInstance().probe(address.host.c_str(), address.port, 0).reachable != 0;
}

bool objectAnswers(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    // The ORB keeps its connections to a process that has been killed. The first call on each of them fails, also when
    // another process serves the same object by now; one that nobody serves is TRANSIENT on a new connection.
    constexpr int mostDeadConnections = 8;
    const CORBA::Object_var limited = withCallLimit<CORBA::Object>(object, limit);
    for (int dead = 0; dead < mostDeadConnections; ++dead) {
        try {
            return exists(limited);
        } catch (const CORBA::COMM_FAILURE &) {
            continue;
        }
    }
    return false;
}

} // namespace installation

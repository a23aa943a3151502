#include "installation/cco/liveness.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/ulmaos.h"

#include <charconv>

namespace installation
{

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
    try {
        return !CORBA::Object_var(withCallLimit(object, limit))->_non_existent();
    } catch (const CORBA::TRANSIENT &) {
        return false;
    } catch (const CORBA::COMM_FAILURE &) {
        return false;
    } catch (const CORBA::TIMEOUT &) {
        return false;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return false;
    } catch (const CORBA::SystemException &) {
        return true; // a refusal is an answer
    }
}

} // namespace installation

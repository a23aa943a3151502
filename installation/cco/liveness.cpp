#include "installation/cco/liveness.h"

#include "installation/cco/orbaccess.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <memory>

namespace installation
{

namespace
{

using Clock = std::chrono::steady_clock;
using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

class Socket
{
public:
    explicit Socket(const addrinfo &address)
        : descriptor(::socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
    }
    ~Socket()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;

    const int descriptor;
};

AddressList lookUp(const NetworkAddress &address)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo *found = nullptr;
    if (::getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found) != 0)
        found = nullptr;
    return {found, &freeaddrinfo};
}

bool waitUntilWritable(int descriptor, Clock::time_point deadline)
{
    pollfd waited{descriptor, POLLOUT, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        const int ready = left > 0 ? ::poll(&waited, 1, static_cast<int>(left)) : 0;
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

bool connects(const addrinfo &address, Clock::time_point deadline)
{
    const Socket socket(address);
    if (socket.descriptor < 0)
        return false;
    if (::connect(socket.descriptor, address.ai_addr, address.ai_addrlen) == 0)
        return true;
    if (errno != EINPROGRESS || !waitUntilWritable(socket.descriptor, deadline))
        return false;
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket.descriptor, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
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

bool addressAnswers(const NetworkAddress &address, std::chrono::milliseconds limit)
{
    const AddressList found = lookUp(address);
    const auto deadline = Clock::now() + limit;
    for (const addrinfo *candidate = found.get(); candidate; candidate = candidate->ai_next)
        if (connects(*candidate, deadline))
            return true;
    return false;
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

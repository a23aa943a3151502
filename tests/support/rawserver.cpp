#include "tests/support/rawserver.h"

#include <stdexcept>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

RawServer::RawServer(const QString &address, unsigned short port, Answer answer, std::chrono::milliseconds delay)
    : answer(std::move(answer)), delay(delay), listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    inet_pton(AF_INET, address.toLatin1().constData(), &name.sin_addr);
    if (bind(listener, reinterpret_cast<sockaddr *>(&name), sizeof name) != 0 || listen(listener, 10) != 0
        || pipe(ending) != 0)
        throw std::runtime_error("cannot listen at " + address.toStdString());
    thread = std::thread([this] { serve(); });
}

RawServer::~RawServer()
{
    close(ending[1]);
    thread.join();
    close(ending[0]);
    close(listener);
}

void RawServer::serve()
{
    std::vector<pollfd> watched{{ending[0], POLLIN, 0}, {listener, POLLIN, 0}};
    while (poll(watched.data(), watched.size(), -1) > 0 && !watched[0].revents) {
        for (std::size_t i = 2; i < watched.size(); ++i) {
            if (!watched[i].revents)
                continue;
            char bytes[4096];
            const ssize_t length = read(watched[i].fd, bytes, sizeof bytes);
            if (length <= 0) {
                watched[i].events = 0; // its end is the client's; ours comes later
            } else if (poll(watched.data(), 1, static_cast<int>(delay.count())) == 0) { // unless it ends meanwhile
                const std::string said = answer(std::string(bytes, static_cast<std::size_t>(length)));
                (void)send(watched[i].fd, said.data(), said.size(), MSG_NOSIGNAL);
            }
        }
        if (watched[1].revents)
            watched.push_back({accept(listener, nullptr, nullptr), POLLIN, 0});
    }
    for (std::size_t i = 2; i < watched.size(); ++i)
        close(watched[i].fd);
}

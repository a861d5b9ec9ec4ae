#include "NetManager/Socket.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

FileDescriptor::~FileDescriptor()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

std::optional<sockaddr_in> resolveIpv4(const char* host, int port)
{
    // A dotted address is its own answer: no resolver, no allocation.
    sockaddr_in address{};
    address.sin_family = AF_INET;
    if (port >= 0 && port <= 65535 && inet_pton(AF_INET, host, &address.sin_addr) == 1) {
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        return address;
    }

    if (host[0] == '\0') // a free session slot; not worth a question to the name servers
        return std::nullopt;

    char service[16];
    std::snprintf(service, sizeof service, "%d", port);
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    if (getaddrinfo(host, service, &hints, &first) != 0)
        return std::nullopt;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> list(first, freeaddrinfo);
    for (const addrinfo* entry = first; entry != nullptr; entry = entry->ai_next) {
        if (entry->ai_family != AF_INET || entry->ai_addrlen < sizeof address)
            continue;
        std::memcpy(&address, entry->ai_addr, sizeof address);
        return address;
    }
    return std::nullopt;
}

FileDescriptor makeTcpSocket()
{
    return FileDescriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

bool setBlocking(const FileDescriptor& socket, bool blocking)
{
    const int flags = fcntl(socket.get(), F_GETFL);
    if (flags < 0)
        return false;
    return fcntl(socket.get(), F_SETFL, blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK) == 0;
}

bool setLinger(const FileDescriptor& socket, int seconds)
{
    const linger option{.l_onoff = 1, .l_linger = seconds};
    return setsockopt(socket.get(), SOL_SOCKET, SO_LINGER, &option, sizeof option) == 0;
}

void setSendLimit(const FileDescriptor& socket, std::chrono::milliseconds limit)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(limit);
    const auto rest = std::chrono::duration_cast<std::chrono::microseconds>(limit - seconds);
    const timeval option{.tv_sec = seconds.count(), .tv_usec = rest.count()};
    setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &option, sizeof option);
}

Wait waitFor(const FileDescriptor& socket, unsigned waitSet, std::chrono::milliseconds limit)
{
    using std::chrono::milliseconds;
    using std::chrono::steady_clock;

    constexpr short ended = POLLERR | POLLHUP | POLLNVAL;
    const short wanted = static_cast<short>(((waitSet & Readable) != 0 ? POLLIN : 0) |
                                            ((waitSet & Writable) != 0 ? POLLOUT : 0));
    const short urgent = (waitSet & Exception) != 0 ? POLLPRI : 0;
    pollfd entry{.fd = socket.get(), .events = static_cast<short>(wanted | urgent), .revents = 0};

    const int errorBefore = errno;
    const auto deadline = steady_clock::now() + limit;
    int count = poll(&entry, 1, static_cast<int>(limit.count()));
    while (count < 0 && errno == EINTR) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
        count = poll(&entry, 1, static_cast<int>(std::max(left, milliseconds(0)).count()));
    }

    if (count < 0)
        return Wait::Failed;
    errno = errorBefore;
    if (count == 0)
        return Wait::TimedOut;
    return (entry.revents & (wanted | ended)) != 0 ? Wait::Ready : Wait::Exceptional;
}

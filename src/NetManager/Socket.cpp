#include "NetManager/Socket.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include <arpa/inet.h>
#include <netdb.h>

namespace
{

void setLimit(const FileDescriptor& socket, int option, std::chrono::milliseconds limit)
{
    limit = std::max(limit, std::chrono::milliseconds(1)); // 0 would mean no limit
    const timeval value{.tv_sec = limit.count() / 1000, .tv_usec = limit.count() % 1000 * 1000};
    setsockopt(socket.get(), SOL_SOCKET, option, &value, sizeof value);
}

} // namespace

std::optional<sockaddr_in> resolveIpv4(const char* host, int port)
{
    // A dotted address is its own answer: no resolver, no allocation.
    sockaddr_in address{};
    address.sin_family = AF_INET;
    if (port < 0)
        return std::nullopt;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, host, &address.sin_addr) == 1)
        return address;

    if (host[0] == '\0') // a free session slot; not worth a question to the name servers
        return std::nullopt;

    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    if (getaddrinfo(host, nullptr, &hints, &first) != 0)
        return std::nullopt;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> list(first, freeaddrinfo);
    for (const addrinfo* entry = first; entry != nullptr; entry = entry->ai_next) {
        if (entry->ai_family != AF_INET || entry->ai_addrlen < sizeof address)
            continue;
        std::memcpy(&address, entry->ai_addr, sizeof address);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        return address;
    }
    return std::nullopt;
}

bool setLinger(const FileDescriptor& socket, int seconds)
{
    const linger option{.l_onoff = 1, .l_linger = seconds};
    return setsockopt(socket.get(), SOL_SOCKET, SO_LINGER, &option, sizeof option) == 0;
}

void setSendLimit(const FileDescriptor& socket, std::chrono::milliseconds limit)
{
    setLimit(socket, SO_SNDTIMEO, limit);
}

void setReceiveLimit(const FileDescriptor& socket, std::chrono::milliseconds limit)
{
    setLimit(socket, SO_RCVTIMEO, limit);
}

Wait waitFor(const FileDescriptor& socket, unsigned waitSet, std::chrono::milliseconds limit)
{
    using std::chrono::milliseconds;
    using std::chrono::steady_clock;

    pollfd entry{.fd = socket.get(), .events = static_cast<short>(waitSet), .revents = 0};
    const int errorBefore = errno;
    int count = poll(&entry, 1, static_cast<int>(limit.count()));
    if (count < 0 && errno == EINTR) {
        const auto deadline = steady_clock::now() + limit;
        while (count < 0 && errno == EINTR) {
            const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
            count = poll(&entry, 1, static_cast<int>(std::max(left, milliseconds(0)).count()));
        }
    }

    if (count < 0)
        return Wait::Failed;
    errno = errorBefore;
    if (count == 0)
        return Wait::TimedOut;
    return entry.revents == POLLPRI ? Wait::Exceptional : Wait::Ready;
}

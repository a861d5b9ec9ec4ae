// A camera on bare sockets, with manners that the simulated one does not have.
#pragma once

#include <functional>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <sys/socket.h>

#include "NetManager/Socket.h"

/// Serves its second connection, the first being the probe, as it is told, and closes it.
class BareCamera
{
public:
    using Serve = std::function<void(const FileDescriptor& connection)>;

    explicit BareCamera(Serve serve) : serve_(std::move(serve))
    {
        EXPECT_EQ(bind(listener_.get(), reinterpret_cast<sockaddr*>(&address_), sizeof address_), 0);
        EXPECT_EQ(listen(listener_.get(), 4), 0);
        socklen_t size = sizeof address_;
        getsockname(listener_.get(), reinterpret_cast<sockaddr*>(&address_), &size);
        thread_ = std::jthread([this] {
            limitWaits(listener_);
            const FileDescriptor probe(accept(listener_.get(), nullptr, nullptr));
            const FileDescriptor connection(accept(listener_.get(), nullptr, nullptr));
            limitWaits(connection);
            serve_(connection);
        });
    }

    int port() const { return ntohs(address_.sin_port); }

private:
    static void limitWaits(const FileDescriptor& socket) // for accepting too: no test hangs
    {
        const timeval limit{.tv_sec = 10, .tv_usec = 0};
        setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }

    Serve serve_;
    FileDescriptor listener_ = makeTcpSocket();
    sockaddr_in address_{
        .sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
    std::jthread thread_;
};

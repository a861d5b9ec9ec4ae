// What listens where a search asks: records each datagram and answers as it is told.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

/// Whether multicast is harmless here: there is no interface but the loopback.
inline bool isPrivateNetwork()
{
    struct if_nameindex* interfaces = if_nameindex();
    const bool alone = interfaces != nullptr && interfaces[0].if_index != 0 && interfaces[1].if_index == 0 &&
                       std::string(interfaces[0].if_name) == "lo";
    if_freenameindex(interfaces);
    return alone;
}

class Responder
{
public:
    struct Datagram
    {
        std::string bytes;
        int sourcePort;
    };
    using Send = std::function<void(const std::string& answer)>;
    /// Answers the n-th datagram, n from 0.
    using Answers = std::function<void(std::size_t n, const Send& send)>;

    explicit Responder(Answers answers = [](std::size_t, const Send&) {})
        : answers_(std::move(answers)), socket_(listeningSocket()), thread_([this] { run(); })
    {
    }

    ~Responder()
    {
        ended_ = true;
        thread_.join();
        close(socket_);
    }

    std::vector<Datagram> datagrams() const
    {
        const std::lock_guard lock(mutex_);
        return datagrams_;
    }

private:
    static int listeningSocket()
    {
        const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
        const int on = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(3702);
        ip_mreq group{};
        inet_pton(AF_INET, "239.255.255.250", &group.imr_multiaddr);
        inet_pton(AF_INET, "127.0.0.1", &group.imr_interface);
        if (bind(socket, reinterpret_cast<sockaddr*>(&place), sizeof place) != 0 ||
            setsockopt(socket, IPPROTO_IP, IP_ADD_MEMBERSHIP, &group, sizeof group) != 0)
            throw std::runtime_error("cannot listen to multicast");
        return socket;
    }

    void run()
    {
        while (!ended_) {
            pollfd ready{.fd = socket_, .events = POLLIN, .revents = 0};
            if (poll(&ready, 1, 5) > 0)
                answerNext();
        }
    }

    void answerNext()
    {
        char bytes[65536];
        sockaddr_in source{};
        socklen_t size = sizeof source;
        const ssize_t length =
            recvfrom(socket_, bytes, sizeof bytes, 0, reinterpret_cast<sockaddr*>(&source), &size);
        if (length < 0)
            return;
        std::size_t n;
        {
            const std::lock_guard lock(mutex_);
            n = datagrams_.size();
            datagrams_.push_back({{bytes, static_cast<std::size_t>(length)}, ntohs(source.sin_port)});
        }
        answers_(n, [&](const std::string& answer) {
            sendto(socket_, answer.data(), answer.size(), 0, reinterpret_cast<sockaddr*>(&source), size);
        });
    }

    Answers answers_;
    int socket_;
    std::atomic<bool> ended_{false};
    mutable std::mutex mutex_;
    std::vector<Datagram> datagrams_;
    std::thread thread_;
};

// Whoever searches for cameras, on bare sockets and with messages of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

inline constexpr char loopback[] = "127.0.0.1";

inline sockaddr_in place(const char* address, unsigned port)
{
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(static_cast<std::uint16_t>(port));
    inet_pton(AF_INET, address, &place.sin_addr);
    return place;
}

inline const sockaddr_in group = place("239.255.255.250", 3702);

/// A UDP socket that takes part in multicast on loopback only, whatever the machine's routes say.
class UdpSocket
{
public:
    explicit UdpSocket(const sockaddr_in& bound = place(loopback, 0))
    {
        const int on = 1;
        const timeval patience{5, 0};
        const in_addr interface = place(loopback, 0).sin_addr;
        setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(socket_, IPPROTO_IP, IP_MULTICAST_IF, &interface, sizeof interface);
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&bound), sizeof bound), 0);
    }
    ~UdpSocket() { close(socket_); }
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    void join()
    {
        const ip_mreq membership{group.sin_addr, place(loopback, 0).sin_addr};
        EXPECT_EQ(setsockopt(socket_, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership), 0);
    }

    unsigned port() const
    {
        sockaddr_in own{};
        socklen_t size = sizeof own;
        getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
        return ntohs(own.sin_port);
    }

    void send(const std::string& datagram)
    {
        const auto* const to = reinterpret_cast<const sockaddr*>(&group);
        EXPECT_EQ(sendto(socket_, datagram.data(), datagram.size(), 0, to, sizeof group),
                  static_cast<ssize_t>(datagram.size()));
    }

    /// The next datagram; a failure when none comes.
    std::string receive()
    {
        std::string datagram(65536, '\0');
        const ssize_t size = recv(socket_, datagram.data(), datagram.size(), 0);
        EXPECT_GE(size, 0) << "nothing came";
        datagram.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return datagram;
    }

private:
    int socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

/// An envelope around a body; prefixes: none SOAP, w addressing, d discovery, dn network video.
inline std::string message(const std::string& body, const std::string& id = "uuid:asked",
                           const std::string& soap = "http://www.w3.org/2003/05/soap-envelope")
{
    const std::string header = id.empty() ? "" : "<w:MessageID>" + id + "</w:MessageID>";
    return "<Envelope xmlns=\"" + soap +
           "\" xmlns:w=\"http://schemas.xmlsoap.org/ws/2004/08/addressing\""
           " xmlns:d=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\""
           " xmlns:dn=\"http://www.onvif.org/ver10/network/wsdl\"><Header>" +
           header + "</Header><Body>" + body + "</Body></Envelope>";
}

inline std::string probe(const std::string& content = "", const std::string& id = "uuid:asked")
{
    return message("<d:Probe>" + content + "</d:Probe>", id);
}

/// What comes back for a datagram. A Probe for everything is sent behind it, so that nobody waits for silence.
inline std::vector<std::string> repliesTo(const std::string& datagram)
{
    UdpSocket searcher;
    searcher.send(datagram);
    searcher.send(probe("", "uuid:last"));
    std::vector<std::string> replies{searcher.receive()};
    while (!replies.back().empty() && replies.back().find(">uuid:last<") == std::string::npos)
        replies.push_back(searcher.receive());
    replies.pop_back();
    return replies;
}

inline std::string replyTo(const std::string& datagram)
{
    const std::vector<std::string> replies = repliesTo(datagram);
    EXPECT_EQ(replies.size(), 1U);
    return replies.empty() ? "" : replies.front();
}

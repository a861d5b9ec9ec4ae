// The camera's place in the group of devices that searches are sent to.
#pragma once

#include <asio.hpp>

#include <chrono>
#include <string>
#include <thread>

namespace kxsim
{

/// What goes back for a datagram.
struct DatagramReply
{
    std::string bytes{};
    unsigned times = 0;
    std::chrono::milliseconds delay{0}; ///< before each
};

class DatagramHandler
{
public:
    /// Called on the server's thread.
    virtual DatagramReply answer(const std::string& datagram, const std::string& address,
                                 unsigned short port) = 0;

protected:
    ~DatagramHandler() = default;
};

/// Hears from start() to stop(); announcements are made before or after.
class DiscoveryServer
{
public:
    /// Throws std::system_error when the interface is not there or does not take part in the group.
    DiscoveryServer(const std::string& interfaceAddress, DatagramHandler& handler);
    ~DiscoveryServer() { stop(); }
    DiscoveryServer(const DiscoveryServer&) = delete;
    DiscoveryServer& operator=(const DiscoveryServer&) = delete;

    void start();
    void stop();
    /// Tells the whole group, as far as the network lets it.
    void announce(const std::string& datagram);

private:
    using Udp = asio::ip::udp;

    asio::awaitable<void> receive();
    asio::awaitable<void> send(DatagramReply reply, Udp::endpoint receiver);

    asio::io_context io_{1};
    DatagramHandler& handler_;
    Udp::socket socket_;
    std::thread thread_;
};

} // namespace kxsim

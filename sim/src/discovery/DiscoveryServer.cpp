// The socket is bound to the group's address, so that it receives what is sent to the group and nothing else, and any
// number of cameras can have one. Its own thread receives and sends; destruction stops it as HttpServer does.
#include "DiscoveryServer.h"

#include "../Sockets.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <system_error>
#include <utility>

namespace kxsim
{
namespace
{

using asio::ip::udp;
namespace multicast = asio::ip::multicast;

constexpr std::size_t largestDatagram = 65536;

udp::endpoint group()
{
    return {asio::ip::address_v4({239, 255, 255, 250}), 3702};
}

// Otherwise the kernel would also deliver what other programs' sockets joined the group for, on other interfaces.
void hearOnlyOwnInterface(udp::socket& socket)
{
    const int off = 0;
    if (::setsockopt(socket.native_handle(), IPPROTO_IP, IP_MULTICAST_ALL, &off, sizeof off) != 0)
        throw std::system_error(errno, std::generic_category());
}

} // namespace

DiscoveryServer::DiscoveryServer(const std::string& interfaceAddress, DatagramHandler& handler)
    : handler_(handler), socket_(io_, Udp::v4())
{
    const asio::ip::address_v4 interface = asio::ip::make_address_v4(interfaceAddress);
    keepFromChildren(socket_);
    hearOnlyOwnInterface(socket_);
    socket_.set_option(Udp::socket::reuse_address(true));
    socket_.set_option(multicast::outbound_interface(interface));
    socket_.set_option(multicast::join_group(group().address().to_v4(), interface));
    socket_.bind(group());
}

void DiscoveryServer::start()
{
    asio::co_spawn(io_, receive(), asio::detached);
    thread_ = std::thread([this] { io_.run(); });
}

void DiscoveryServer::stop()
{
    io_.stop();
    if (thread_.joinable())
        thread_.join();
}

void DiscoveryServer::announce(const std::string& datagram)
{
    asio::error_code nobodyHears;
    socket_.send_to(asio::buffer(datagram), group(), 0, nobodyHears);
}

asio::awaitable<void> DiscoveryServer::receive()
{
    std::string buffer(largestDatagram, '\0');
    for (;;) {
        Udp::endpoint sender;
        asio::error_code error;
        const std::size_t size = co_await socket_.async_receive_from(
            asio::buffer(buffer), sender, asio::redirect_error(asio::use_awaitable, error));
        if (error)
            continue;
        DatagramReply reply =
            handler_.answer(buffer.substr(0, size), sender.address().to_string(), sender.port());
        asio::co_spawn(io_, send(std::move(reply), sender), asio::detached);
    }
}

asio::awaitable<void> DiscoveryServer::send(DatagramReply reply, Udp::endpoint receiver)
{
    for (unsigned i = 0; i < reply.times; ++i) {
        if (reply.delay.count() > 0)
            co_await pauseFor(reply.delay);
        asio::error_code notReached;
        socket_.send_to(asio::buffer(reply.bytes), receiver, 0, notReached);
    }
}

} // namespace kxsim

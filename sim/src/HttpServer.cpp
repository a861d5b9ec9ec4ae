// How the port is kept: `reservation_` is bound to it for the camera's whole life and never listens, so that the port
// stays the camera's own while `listener_` comes and goes with the state of the door:
//   Open      `listener_` accepts; each connection is a coroutine of its own.
//   Refusing  no listener: the kernel answers attempts with a reset.
//   Dead      `listener_` has room for one connection, which `blocker_`, our own, takes up for ever. The kernel then
//             drops what asks for another, as if the camera were gone.
// A restart closes the door for its time, whatever the handler wants, and drops whom it does not concern.
// One thread runs it all; other threads only post to it. Destruction stops that thread wherever it is and then
// drops the connections: whatever a coroutine waits for, it is simply not resumed.
// Where a connection breaks, an exception ends its coroutine, and with it closes its socket.
#include "HttpServer.h"

#include "HttpText.h"
#include "Sockets.h"

#include <netinet/tcp.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <future>
#include <string_view>
#include <utility>

namespace kxsim
{
namespace
{

using asio::ip::tcp;
using namespace std::chrono_literals;

constexpr std::size_t longestHead = 64 * 1024;
constexpr std::size_t longestBody = 64 * 1024 * 1024;
constexpr std::string_view blankLine = "\r\n\r\n";

bool clientIsThere(tcp::socket& socket)
{
    tcp_info info{};
    socklen_t size = sizeof info;
    ::getsockopt(socket.native_handle(), IPPROTO_TCP, TCP_INFO, &info, &size);
    return info.tcpi_state == TCP_ESTABLISHED;
}

// Unread bytes hide the client's leaving from every kind of waiting, hence the asking again and again.
asio::awaitable<void> leaveUnread(tcp::socket& socket)
{
    while (clientIsThere(socket))
        co_await pauseFor(50ms);
}

// Reads a head, and maybe more behind it; its length. 0 when the client leaves first, as a mere reachability probe does.
asio::awaitable<std::size_t> readHead(tcp::socket& socket, std::string& input)
{
    asio::error_code error;
    const std::size_t length =
        co_await asio::async_read_until(socket, asio::dynamic_buffer(input, longestHead), blankLine,
                                        asio::redirect_error(asio::use_awaitable, error));
    co_return error == asio::error::not_found ? input.size() : length; // as long as may be, and no blank line
}

// What a head tells of its body, which there is none of in most cases.
std::size_t bodyLength(std::string_view head)
{
    const std::string length = headerOf(head, "Content-Length");
    return length.empty() ? 0 : std::strtoull(length.c_str(), nullptr, 10);
}

// Fills up a body of which the beginning is there. A client that leaves before its end breaks the connection.
asio::awaitable<void> readRest(tcp::socket& socket, std::string& body, std::size_t length)
{
    const std::size_t there = std::min(body.size(), length);
    body.resize(length);
    co_await asio::async_read(socket, asio::buffer(body) + there, asio::use_awaitable);
}

asio::awaitable<void> discardInput(tcp::socket& socket)
{
    std::array<char, 4096> unwanted;
    asio::error_code error;
    while (!error)
        co_await socket.async_read_some(asio::buffer(unwanted),
                                        asio::redirect_error(asio::use_awaitable, error));
}

asio::awaitable<void> send(tcp::socket& socket, std::string_view bytes)
{
    co_await asio::async_write(socket, asio::buffer(bytes), asio::use_awaitable);
}

asio::awaitable<void> sendInPieces(tcp::socket& socket, const Delivery& delivery)
{
    const std::string_view bytes = delivery.bytes;
    const std::size_t size = std::max<std::size_t>(delivery.pieceSize, 1);
    for (std::size_t start = 0; start < bytes.size(); start += size) {
        if (start > 0)
            co_await pauseFor(delivery.pause);
        co_await send(socket, bytes.substr(start, size));
    }
}

asio::awaitable<void> sendEndlessly(tcp::socket& socket, const Delivery& delivery)
{
    co_await send(socket, delivery.bytes);
    const std::string more(4096, 'x');
    for (;;)
        co_await send(socket, more);
}

asio::awaitable<void> deliver(tcp::socket& socket, const Delivery& delivery)
{
    switch (delivery.manner) {
    case Delivery::Manner::Whole:
        return send(socket, delivery.bytes);
    case Delivery::Manner::InPieces:
        return sendInPieces(socket, delivery);
    case Delivery::Manner::Endless:
        return sendEndlessly(socket, delivery);
    case Delivery::Manner::Never:
        break;
    }
    return discardInput(socket);
}

// Closing while the client still sends would reset the connection, and the client might lose the reply.
asio::awaitable<void> closeGracefully(tcp::socket& socket)
{
    asio::error_code alreadyGone;
    socket.shutdown(tcp::socket::shutdown_send, alreadyGone);
    co_await discardInput(socket);
}

} // namespace

/// A connection, on the list for as long as it is served.
class HttpServer::Guest
{
public:
    Guest(std::set<Tcp::socket*>& guests, Tcp::socket& socket) : guests_(guests), socket_(socket)
    {
        guests_.insert(&socket_);
    }
    ~Guest() { guests_.erase(&socket_); }
    Guest(const Guest&) = delete;
    Guest& operator=(const Guest&) = delete;

private:
    std::set<Tcp::socket*>& guests_;
    Tcp::socket& socket_;
};

HttpServer::HttpServer(const std::string& address, unsigned short port, HttpHandler& handler)
    : handler_(handler), endpoint_(asio::ip::make_address(address), port),
      reservation_(io_, endpoint_.protocol())
{
    reservation_.set_option(Tcp::socket::reuse_address(true));
    reservation_.bind(endpoint_);
    endpoint_ = reservation_.local_endpoint();
    keepFromChildren(reservation_);
}

HttpServer::~HttpServer()
{
    io_.stop();
    if (thread_.joinable())
        thread_.join();
}

void HttpServer::start()
{
    open();
    thread_ = std::thread([this] {
        const auto keepRunning = asio::make_work_guard(io_); // even with the door closed and nobody inside
        io_.run();
    });
}

void HttpServer::refreshDoor()
{
    asio::dispatch(io_, std::packaged_task<void()>([this] { updateDoor(); })).get();
}

void HttpServer::updateDoor()
{
    setDoor(restarts_ > 0 ? Door::Refusing : handler_.door());
}

void HttpServer::restart(const Tcp::socket& survivor, std::chrono::milliseconds outage)
{
    asio::error_code alreadyGone;
    for (Tcp::socket* guest : guests_)
        if (guest != &survivor)
            guest->close(alreadyGone);
    if (outage <= 0ms)
        return;
    ++restarts_;
    updateDoor();
    const auto timer = std::make_shared<asio::steady_timer>(io_, outage);
    timer->async_wait([this, timer](asio::error_code) {
        --restarts_;
        updateDoor();
    });
}

std::shared_ptr<HttpServer::Tcp::acceptor> HttpServer::listen(int backlog)
{
    auto listener = std::make_shared<Tcp::acceptor>(io_, endpoint_.protocol());
    keepFromChildren(*listener);
    listener->set_option(Tcp::acceptor::reuse_address(true));
    listener->bind(endpoint_);
    listener->listen(backlog);
    return listener;
}

void HttpServer::setDoor(Door door)
{
    if (door == door_)
        return;
    blocker_.reset();
    listener_->close();
    if (door == Door::Open)
        open();
    else if (door == Door::Dead)
        block();
    door_ = door;
}

void HttpServer::open()
{
    listener_ = listen(Tcp::acceptor::max_listen_connections);
    asio::co_spawn(io_, acceptConnections(listener_), asio::detached);
}

void HttpServer::block()
{
    listener_ = listen(0);
    blocker_.emplace(io_, endpoint_.protocol());
    keepFromChildren(*blocker_);
    blocker_->async_connect(endpoint_, [](asio::error_code) {});
    listener_->wait(Tcp::acceptor::wait_read); // until the place is taken, be it by a client that was quicker
}

asio::awaitable<void> HttpServer::acceptConnections(std::shared_ptr<Tcp::acceptor> listener)
{
    while (listener->is_open()) {
        asio::error_code error;
        Tcp::socket socket =
            co_await listener->async_accept(asio::redirect_error(asio::use_awaitable, error));
        if (!error)
            asio::co_spawn(io_, serve(std::move(socket)), asio::detached);
        else
            co_await pauseFor(10ms); // out of descriptors, most likely: some come back as connections end
    }
}

asio::awaitable<void> HttpServer::serve(Tcp::socket socket)
{
    const Guest guest(guests_, socket);
    keepFromChildren(socket);
    socket.set_option(Tcp::no_delay(true)); // pieces are to arrive as pieces
    if (!handler_.accepted())
        co_return co_await leaveUnread(socket);
    std::string input;
    const std::size_t headLength = co_await readHead(socket, input);
    if (headLength == 0)
        co_return;
    const std::string head = input.substr(0, headLength);
    Delivery delivery{renderReply(400, statusText(400))};
    if (const std::size_t length = bodyLength(head); head.ends_with(blankLine) && length <= longestBody) {
        input.erase(0, headLength);
        co_await readRest(socket, input, length);
        delivery = handler_.answer(head, input);
    }
    if (delivery.outage)
        restart(socket, *delivery.outage);
    co_await deliver(socket, delivery);
    co_await closeGracefully(socket);
}

} // namespace kxsim

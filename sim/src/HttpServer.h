// The camera's TCP port: connections in, replies out, and the ways of treating a client badly.
#pragma once

#include <asio.hpp>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace kxsim
{

/// What becomes of connection attempts.
enum class Door
{
    Open,
    Refusing, ///< they are reset
    Dead      ///< they are not answered at all
};

/// What goes over a connection in answer to a request.
struct Delivery
{
    enum class Manner
    {
        Whole,
        InPieces, ///< of `pieceSize`, `pause` apart
        Endless,  ///< `bytes`, and then more for as long as the client is there
        Never
    };

    std::string bytes; ///< may be empty: the connection closes without a reply
    Manner manner = Manner::Whole;
    std::size_t pieceSize = 1;
    std::chrono::milliseconds pause{0};
    /// The server then restarts: from before this delivery on it refuses connections for so long, and all others drop.
    std::optional<std::chrono::milliseconds> outage = {};
};

/// What a server asks the camera behind it. Every member is called on the server's thread.
class HttpHandler
{
public:
    virtual Door door() = 0;
    /// A connection has come; false: its requests stay unread.
    virtual bool accepted() = 0;
    /// A request has come, its head with the blank line.
    virtual Delivery answer(const std::string& head, const std::string& body) = 0;

protected:
    ~HttpHandler() = default;
};

/// Holds its port from construction on, listens from start() on.
class HttpServer
{
public:
    /// Throws std::system_error when the address is not this machine's or the port is taken.
    HttpServer(const std::string& address, unsigned short port, HttpHandler& handler);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    unsigned short port() const { return endpoint_.port(); }
    void start();
    /// Brings the port into the state that the handler now wants; it is when this returns.
    void refreshDoor();

private:
    using Tcp = asio::ip::tcp;

    std::shared_ptr<Tcp::acceptor> listen(int backlog);
    void updateDoor();
    void setDoor(Door door);
    void restart(const Tcp::socket& survivor, std::chrono::milliseconds outage);
    void open();
    void block();
    asio::awaitable<void> acceptConnections(std::shared_ptr<Tcp::acceptor> listener);
    asio::awaitable<void> serve(Tcp::socket socket);

    class Guest;

    std::set<Tcp::socket*> guests_; ///< before `io_`, whose end ends their coroutines
    asio::io_context io_{1};
    HttpHandler& handler_;
    Tcp::endpoint endpoint_;
    Tcp::socket reservation_;
    Door door_ = Door::Open;
    int restarts_ = 0;                        ///< under way
    std::shared_ptr<Tcp::acceptor> listener_; ///< shared with its accepting coroutine
    std::optional<Tcp::socket> blocker_;
    std::thread thread_;
};

} // namespace kxsim

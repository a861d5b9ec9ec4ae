// What the camera's servers share in their use of sockets.
#pragma once

#include <asio.hpp>

#include <chrono>
#include <fcntl.h>

namespace kxsim
{

// A program started by this one must not keep the camera's port or connections open.
template <typename Socket>
void keepFromChildren(Socket& socket)
{
    ::fcntl(socket.native_handle(), F_SETFD, FD_CLOEXEC);
}

inline asio::awaitable<void> pauseFor(std::chrono::milliseconds time)
{
    asio::steady_timer timer(co_await asio::this_coro::executor, time);
    co_await timer.async_wait(asio::use_awaitable);
}

} // namespace kxsim

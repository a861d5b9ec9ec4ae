#include "StreamDoor.h"

#include <netinet/in.h>
#include <system_error>

namespace kxsim
{
namespace
{

Owned<GSocket> bound(GSocketAddress* address)
{
    GError* error = nullptr;
    Owned<GSocket> socket(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, &error));
    if (socket && g_socket_bind(socket.get(), address, TRUE, &error))
        return socket;
    const int reason = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_ADDRESS_IN_USE)      ? EADDRINUSE
                       : g_error_matches(error, G_IO_ERROR, G_IO_ERROR_PERMISSION_DENIED) ? EACCES
                                                                                          : EADDRNOTAVAIL;
    g_error_free(error);
    throw std::system_error(reason, std::generic_category());
}

Owned<GSocketAddress> addressOf(const std::string& host, int port)
{
    Owned<GSocketAddress> address(
        g_inet_socket_address_new_from_string(host.c_str(), static_cast<guint>(port)));
    if (!address)
        throw std::system_error(EINVAL, std::generic_category());
    return address;
}

} // namespace

StreamDoor::StreamDoor(GstRTSPServer* server, GMainContext* context, const std::string& address, int port)
    : server_(server), context_(context), reservation_(bound(addressOf(address, port).get()))
{
    address_.reset(g_socket_get_local_address(reservation_.get(), nullptr));
}

int StreamDoor::port() const
{
    return g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address_.get()));
}

void StreamDoor::set(State state)
{
    if (state == state_)
        return;
    state_ = state;
    if (accepting_) {
        g_source_destroy(accepting_);
        g_source_unref(accepting_);
        accepting_ = nullptr;
    }
    listener_.reset();
    if (state == State::Closed)
        return;
    listener_ = bound(address_.get());
    g_socket_listen(listener_.get(), nullptr);
    if (state != State::Open)
        return;
    accepting_ = g_socket_create_source(listener_.get(), G_IO_IN, nullptr);
    g_source_set_callback(accepting_, G_SOURCE_FUNC(gst_rtsp_server_io_func), server_, nullptr);
    g_source_attach(accepting_, context_);
}

} // namespace kxsim

// The RTSP port and what becomes of connection attempts.
#pragma once

#include "Owned.h"

#include <gio/gio.h>
#include <gst/rtsp-server/rtsp-server.h>

#include <string>

namespace kxsim
{

/// Keeps its port for as long as it lives, whatever its state. Used on the server's thread alone.
class StreamDoor
{
public:
    enum class State
    {
        Closed, ///< connections are refused
        Open,
        Silent ///< connections are taken, by the system, and left alone
    };

    /// Throws std::system_error when the port is not to be had. Port 0: any free one.
    StreamDoor(GstRTSPServer* server, GMainContext* context, const std::string& address, int port);
    ~StreamDoor() { set(State::Closed); }
    StreamDoor(const StreamDoor&) = delete;
    StreamDoor& operator=(const StreamDoor&) = delete;

    int port() const;
    void set(State state);

private:
    GstRTSPServer* const server_;
    GMainContext* const context_;
    Owned<GSocketAddress> address_;
    Owned<GSocket> reservation_; ///< bound, never listening
    State state_ = State::Closed;
    Owned<GSocket> listener_;
    GSource* accepting_ = nullptr;
};

} // namespace kxsim

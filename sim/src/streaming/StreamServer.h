// The camera's live streams.
#pragma once

#include "Audience.h"
#include "CurrentFault.h"
#include "EventLoop.h"
#include "Mount.h"
#include "Owned.h"
#include "StreamDoor.h"
#include "StreamPlan.h"

#include <gst/rtsp-server/rtsp-server.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace kxsim
{

/// Streams from construction to destruction, on threads of its own. Every member may be called from any thread.
class StreamServer
{
public:
    /// `report` is called on the server's thread with each request. Throws std::system_error when it cannot listen, and
    /// std::runtime_error when the machine lacks a part of GStreamer.
    StreamServer(const std::string& address, ServicePlan plan,
                 std::function<void(const StreamRequest&)> report);
    ~StreamServer();
    StreamServer(const StreamServer&) = delete;
    StreamServer& operator=(const StreamServer&) = delete;

    /// How many clients have a stream.
    int watching() const { return audience_->watching(); }
    int port() const { return port_; }
    /// Does from now on as planned; `plan` is called on the server's thread. Whose stream has changed is disconnected, as the encoder starts anew.
    void follow(const std::function<ServicePlan()>& plan);
    void setFault(const StreamFault& fault);
    /// Disconnects everybody, and refuses connections for so long.
    void restart(std::chrono::milliseconds outage);

private:
    void apply(const ServicePlan& plan);
    void admitUsers();
    void updateDoor();
    void moveTo(int port);
    void close();

    const std::string address_;
    const std::shared_ptr<CurrentFault> fault_ = std::make_shared<CurrentFault>();
    Owned<GstRTSPServer> server_;
    EventLoop loop_;

    std::atomic<int> port_ = 0;

    // Of the loop's thread alone:
    ServicePlan plan_;
    int restarts_ = 0; ///< under way
    std::unique_ptr<StreamDoor> door_;
    std::array<std::unique_ptr<Mount>, 2> mounts_;
    std::unique_ptr<Audience> audience_;
};

} // namespace kxsim

// One of the camera's streams, under its path.
#pragma once

#include "CurrentFault.h"
#include "EncodedLoop.h"
#include "Owned.h"
#include "StreamPlan.h"

#include <gst/rtsp-server/rtsp-server.h>

#include <memory>
#include <string>

namespace kxsim
{

/// The role of users in the server's permissions: each of them may watch everything.
constexpr char userRole[] = "user";

/// Used on the server's thread alone.
class Mount
{
public:
    Mount(GstRTSPServer* server, const std::string& host, std::string path,
          std::shared_ptr<const CurrentFault> fault);
    ~Mount();
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;

    const std::string& path() const { return path_; }
    /// Streams as planned to whoever comes from now on; false when the plan is nothing new.
    bool follow(const StreamPlan& plan);

private:
    void configure(GstRTSPMedia* media);

    const std::string path_;
    const std::shared_ptr<const CurrentFault> fault_;
    StreamPlan plan_;
    std::shared_ptr<EncodedLoop> loop_;
    Owned<GstRTSPMountPoints> points_;
    Owned<GstRTSPMediaFactory> factory_;
};

} // namespace kxsim

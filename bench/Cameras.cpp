#include "Cameras.h"

#include <cerrno>
#include <system_error>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

std::string loopbackAddress(std::size_t index)
{
    return "127.0.0." + std::to_string(index + 1);
}

/// What the cameras' process tells of each.
struct Ports
{
    int http;
    int rtsp;
};

/// The life of the cameras' process: tells the ports, then serves until the other side is gone.
[[noreturn]] void serveUntilAbandoned(int lifeline, std::size_t count, std::optional<LiveSize> live)
{
    try {
        const Cameras cameras(count, live);
        for (const Endpoint& endpoint : cameras.endpoints()) {
            const Ports ports{endpoint.port, endpoint.rtspPort};
            if (::write(lifeline, &ports, sizeof ports) != sizeof ports)
                ::_exit(1);
        }
        char nothing = 0;
        while (::read(lifeline, &nothing, 1) < 0 && errno == EINTR) {
        }
    } catch (const std::exception&) {
        ::_exit(1); // the other side misses the ports
    }
    ::_exit(0);
}

void show(kxsim::SimCamera& camera, LiveSize size)
{
    camera.setValue("audioenable", "0");
    camera.setValue("framerate1", "24"); // counted from 0
    camera.setValue("media_profile_resolution_width[0]", std::to_string(size.width));
    camera.setValue("media_profile_resolution_height[0]", std::to_string(size.height));
}

} // namespace

Cameras::Cameras(std::size_t count, std::optional<LiveSize> live)
{
    for (std::size_t i = 0; i < count; ++i)
        add(i, live);
}

void Cameras::add(std::size_t index, std::optional<LiveSize> live)
{
    // A camera restarts when it has got a firmware; it is to be back for the next one.
    kxsim::CameraOptions options{.address = loopbackAddress(index),
                                 .restartTime = std::chrono::milliseconds(0)};
    if (live)
        options.streaming.port = 0;
    kxsim::SimCamera& camera = *cameras_.emplace_back(std::make_unique<kxsim::SimCamera>(std::move(options)));
    camera.onRequest([&camera](const kxsim::Request&) { camera.forgetRequests(); });
    camera.onStreamRequest([&camera](const kxsim::StreamRequest&) { camera.forgetStreamRequests(); });
    if (live)
        show(camera, *live);
    endpoints_.push_back(
        {camera.host(), camera.port(), live ? std::stoi(camera.value("mainrtspport").value()) : 0});
}

CameraProcess::CameraProcess(std::size_t count, std::optional<LiveSize> live)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw std::system_error(errno, std::generic_category(), "socketpair");
    process_ = ::fork();
    if (process_ < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (process_ == 0) {
        ::close(ends[0]);
        serveUntilAbandoned(ends[1], count, live);
    }
    ::close(ends[1]);
    lifeline_ = ends[0];
    for (std::size_t i = 0; i < count; ++i) {
        Ports ports{};
        if (::recv(lifeline_, &ports, sizeof ports, MSG_WAITALL) != sizeof ports)
            throw std::runtime_error("the simulated cameras do not start");
        endpoints_.push_back({loopbackAddress(i), ports.http, ports.rtsp});
    }
}

CameraProcess::~CameraProcess()
{
    ::close(lifeline_);
    ::waitpid(process_, nullptr, 0);
}

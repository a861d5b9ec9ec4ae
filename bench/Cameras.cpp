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

/// The life of the cameras' process: tells the ports, then serves until the other side is gone.
[[noreturn]] void serveUntilAbandoned(int lifeline, std::size_t count)
{
    try {
        const Cameras cameras(count);
        for (const Endpoint& endpoint : cameras.endpoints()) {
            if (::write(lifeline, &endpoint.port, sizeof endpoint.port) != sizeof endpoint.port)
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

} // namespace

Cameras::Cameras(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        // A camera restarts when it has got a firmware; it is to be back for the next one.
        const auto& camera = cameras_.emplace_back(std::make_unique<kxsim::SimCamera>(kxsim::CameraOptions{
            .address = loopbackAddress(i), .restartTime = std::chrono::milliseconds(0)}));
        camera->onRequest([&camera = *camera](const kxsim::Request&) { camera.forgetRequests(); });
        endpoints_.push_back({camera->host(), camera->port()});
    }
}

CameraProcess::CameraProcess(std::size_t count)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw std::system_error(errno, std::generic_category(), "socketpair");
    process_ = ::fork();
    if (process_ < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (process_ == 0) {
        ::close(ends[0]);
        serveUntilAbandoned(ends[1], count);
    }
    ::close(ends[1]);
    lifeline_ = ends[0];
    for (std::size_t i = 0; i < count; ++i) {
        int port = 0;
        if (::recv(lifeline_, &port, sizeof port, MSG_WAITALL) != sizeof port)
            throw std::runtime_error("the simulated cameras do not start");
        endpoints_.push_back({loopbackAddress(i), port});
    }
}

CameraProcess::~CameraProcess()
{
    ::close(lifeline_);
    ::waitpid(process_, nullptr, 0);
}

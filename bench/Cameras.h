// The cameras that benchmarks talk to. They forget each request at once, since millions of them are to come.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include <KxSim/SimCamera.h>

#include "Endpoint.h"

/// The size of live pictures, 25 a second and without sound.
struct LiveSize
{
    int width;
    int height;
};

/// Cameras of this process, each on a loopback address of its own: a client that connects thousands of times
/// a second would run out of ports towards a single one.
class Cameras
{
public:
    explicit Cameras(std::size_t count, std::optional<LiveSize> live = {});

    const std::vector<Endpoint>& endpoints() const { return endpoints_; }

private:
    void add(std::size_t index, std::optional<LiveSize> live);

    std::vector<std::unique_ptr<kxsim::SimCamera>> cameras_;
    std::vector<Endpoint> endpoints_;
};

/// The same in a process of their own, so that their memory is not taken for this one's. Make it before any
/// thread.
class CameraProcess
{
public:
    explicit CameraProcess(std::size_t count, std::optional<LiveSize> live = {});
    ~CameraProcess();
    CameraProcess(const CameraProcess&) = delete;
    CameraProcess& operator=(const CameraProcess&) = delete;

    const std::vector<Endpoint>& endpoints() const { return endpoints_; }

private:
    pid_t process_ = -1;
    int lifeline_ = -1; // closed by this process, be it by its own end: the cameras end
    std::vector<Endpoint> endpoints_;
};

// kx_media_bench: what live pictures cost. The cameras have a process of their own, so do the clients; what is told of
// here are the clients.
//   kx_media_bench decode|record FRAMES REPETITIONS
//   kx_media_bench calls FRAMES
//   kx_media_bench first-frame|cycles COUNT
//   kx_media_bench losses SECONDS
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>

#include <KxSim/Streaming.h>

#include "../Cameras.h"
#include "Modes.h"

namespace
{

constexpr std::size_t most = 8;
constexpr LiveSize fullSize{1920, 1080};
constexpr LiveSize mediumSize{640, 360};
constexpr LiveSize smallSize{320, 240};

/// Cameras that have encoded all that they will send.
class WarmCameras
{
public:
    WarmCameras(std::size_t count, LiveSize size) : cameras_(count, size)
    {
        run({client("watch-floor", kxsim::framesPerLoop, endpoints().first(1))});
    }

    EndpointSpan endpoints() const { return cameras_.endpoints(); }

private:
    CameraProcess cameras_;
};

/// Lets our client program find out and tell.
void measureByClient(const std::string& mode, unsigned count, std::size_t cameraCount, LiveSize size)
{
    const WarmCameras cameras(cameraCount, size);
    run({client(mode, count, cameras.endpoints())});
}

void measure(const std::string& mode, unsigned count, unsigned repetitions)
{
    if (mode == "decode")
        measureDecoding(WarmCameras(most, fullSize).endpoints(), count, repetitions);
    else if (mode == "record")
        measureRecording(WarmCameras(most, fullSize).endpoints(), count, repetitions);
    else if (mode == "calls")
        measureSystemCalls(WarmCameras(1, fullSize).endpoints(), count);
    else if (mode == "first-frame")
        measureByClient(mode, count, 1, fullSize);
    else if (mode == "losses")
        measureByClient(mode, count, most, mediumSize);
    else if (mode == "cycles")
        measureByClient(mode, count, 1, smallSize);
    else
        throw std::runtime_error("no such measurement: " + mode);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc < 3)
            throw std::runtime_error("what to measure, and how long?");
        const auto number = [&](int index) {
            return argc > index ? static_cast<unsigned>(std::atoi(argv[index])) : 0;
        };
        measure(argv[1], number(2), number(3));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "kx_media_bench: " << error.what() << '\n';
        return 1;
    }
}

// How long one waits for a picture.
#include "Client.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <future>
#include <utility>

#include "FloorStream.h"
#include "LiveView.h"

namespace
{

using Clock = std::chrono::steady_clock;

Clock::duration bySdk(const Endpoint& camera)
{
    std::promise<Clock::time_point> first;
    bool there = false;
    LiveView view(camera, [&](const Picture&) {
        if (!std::exchange(there, true))
            first.set_value(Clock::now());
    });
    const auto begin = Clock::now();
    view.open();
    const auto end = first.get_future().get();
    view.stop();
    return end - begin;
}

Clock::duration byFloor(const Endpoint& camera, FloorStream::Probing probing)
{
    const auto begin = Clock::now();
    FloorStream stream(camera, probing);
    stream.next();
    return Clock::now() - begin;
}

void tellMedian(const char* name, std::vector<Clock::duration>& times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::ranges::nth_element(times, middle);
    std::fprintf(stderr, "first_frame/%s %lld\n", name,
                 static_cast<long long>(std::chrono::nanoseconds(*middle).count()));
}

} // namespace

void timeFirstFrames(unsigned count, const Endpoint& camera)
{
    std::vector<Clock::duration> sdk, floor, probing;
    for (unsigned i = 0; i < count; ++i) {
        sdk.push_back(bySdk(camera));
        floor.push_back(byFloor(camera, FloorStream::Probing::No));
        probing.push_back(byFloor(camera, FloorStream::Probing::Yes));
    }
    tellMedian("sdk", sdk);
    tellMedian("floor", floor);
    tellMedian("probing", probing);
}

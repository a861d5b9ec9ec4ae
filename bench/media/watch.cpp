// The clients whose processor time is taken: they end when each stream has brought its frames.
#include "Client.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <list>
#include <stdexcept>
#include <thread>

#include "FloorStream.h"
#include "LiveView.h"

namespace
{

using namespace std::chrono_literals;

constexpr unsigned framesPerSecond = 25;
constexpr unsigned patience =
    8; // times as long as the frames should take, for a machine that can not keep up

std::chrono::seconds longest(unsigned frames)
{
    return 120s + std::chrono::seconds(frames * patience / framesPerSecond);
}

/// One camera watched until it has brought its frames.
class Watched
{
public:
    Watched(const Endpoint& camera, unsigned frames)
        : missing_(frames), view_(camera, [this](const Picture&) { take(); })
    {
        view_.open();
    }

    void wait(std::chrono::steady_clock::time_point until)
    {
        if (done_.get_future().wait_until(until) != std::future_status::ready)
            throw std::runtime_error(std::to_string(missing_) + " frames do not come to the SDK, which got " +
                                     std::to_string(view_.status().framesReceived));
    }

private:
    void take()
    {
        if (--missing_ > 0)
            return;
        view_.stop(); // the others go on: this one must not decode in the meantime
        done_.set_value();
    }

    std::atomic<unsigned> missing_;
    std::promise<void> done_;
    LiveView view_;
};

} // namespace

void watchBySdk(unsigned frames, const Endpoints& cameras)
{
    std::list<Watched> watched;
    for (const Endpoint& camera : cameras)
        watched.emplace_back(camera, frames);
    const auto until = std::chrono::steady_clock::now() + longest(frames);
    for (Watched& stream : watched)
        stream.wait(until);
}

void watchByFloor(unsigned frames, const Endpoints& cameras)
{
    std::vector<std::future<void>> streams;
    for (const Endpoint& camera : cameras) {
        streams.push_back(std::async(std::launch::async, [&camera, frames] {
            FloorStream stream(camera);
            for (unsigned i = 0; i < frames; ++i)
                stream.next();
        }));
    }
    for (std::future<void>& stream : streams)
        stream.get();
}

void recordBySdk(unsigned frames, const std::string& directory, const Endpoints& cameras)
{
    std::list<LiveView> views;
    for (const Endpoint& camera : cameras) {
        LiveView& view = views.emplace_back(camera);
        view.open();
        view.record(directory.c_str());
    }
    const auto isDone = [frames](const LiveView& view) { return view.status().recordedFrames >= frames; };
    const auto until = std::chrono::steady_clock::now() + longest(frames);
    std::this_thread::sleep_for(1000ms * frames / framesPerSecond); // to ask all the time would cost, too
    while (!std::ranges::all_of(views, isDone)) {
        if (std::chrono::steady_clock::now() > until)
            throw std::runtime_error("the SDK does not record its frames");
        std::this_thread::sleep_for(20ms);
    }
    for (LiveView& view : views) {
        view.stopRecording();
        view.stop();
    }
}

// Fixture for tests that watch the streams of a simulated camera.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <KxSim/SimCamera.h>

#include "ipcctl/StreamTiming.h"
#include "ipcctl/ipcctl.h"

using namespace std::chrono_literals;

/// Waits for something that another thread brings about; false when it takes too long.
inline bool comesTrue(const std::function<bool()>& condition, std::chrono::milliseconds limit = 10s)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

inline std::chrono::milliseconds timeOf(const std::function<void()>& action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
}

/// Names the cases of a parameterised test.
template <typename Case>
std::string nameOf(const testing::TestParamInfo<Case>& tested)
{
    return tested.param.name;
}

/// What the callbacks of a camera get.
class Viewer
{
public:
    struct Frame
    {
        unsigned number; // what it shows; ~0u: nothing that can be read
        int width;
        int height;
        int type;
        float rate;
    };

    static int video(void* source, void* user, unsigned char* pixels, int width, int height, int type,
                     float rate)
    {
        auto& self = *static_cast<Viewer*>(user);
        {
            const std::lock_guard lock(self.mutex_);
            const unsigned number = kxsim::frameNumberOf(pixels, width, height).value_or(~0u);
            self.frames_.push_back({number, width, height, type, rate});
            self.source_ = source;
        }
        if (self.onFrame)
            self.onFrame();
        return 0;
    }

    static int audio(void*, void* user, short* samples, int count, int channels)
    {
        auto& self = *static_cast<Viewer*>(user);
        const std::lock_guard lock(self.mutex_);
        self.samples_.insert(self.samples_.end(), samples, samples + count);
        self.channels_ = channels;
        return 0;
    }

    std::function<void()> onFrame; // called within the video callback; to be set before it is

    std::vector<Frame> frames() const
    {
        const std::lock_guard lock(mutex_);
        return frames_;
    }
    std::vector<unsigned> numbers() const
    {
        std::vector<unsigned> numbers;
        for (const Frame& frame : frames())
            numbers.push_back(frame.number);
        return numbers;
    }
    std::vector<short> samples() const
    {
        const std::lock_guard lock(mutex_);
        return samples_;
    }
    int channels() const
    {
        const std::lock_guard lock(mutex_);
        return channels_;
    }
    void* source() const
    {
        const std::lock_guard lock(mutex_);
        return source_;
    }
    bool sees(std::size_t frames) const
    {
        return comesTrue([&] { return this->frames().size() >= frames; });
    }

private:
    mutable std::mutex mutex_;
    std::vector<Frame> frames_;
    std::vector<short> samples_;
    int channels_ = 0;
    void* source_ = nullptr;
};

/// A simulated camera that streams, and a camera object of the library's. Time limits are the real ones unless a test
/// shortens them; pauses are short.
class StreamTest : public testing::Test
{
protected:
    StreamTest()
    {
        g_streamTiming = {};
        g_streamTiming.late = 5s; // a busy machine is not what most tests are about
        g_streamTiming.firstPause = 20ms;
        g_streamTiming.longestPause = 50ms;
        setSize(320, 240);
        setRate(rate);
        sim.setValue("maxconn", "20"); // it may take it a while to notice that a stream was closed
    }
    ~StreamTest() override { CIpCameraManager::DeleteInstance(); }

    std::string url(const char* path = "/main") const
    {
        return "rtsp://" + sim.host() + ':' + sim.value("mainrtspport").value() + path;
    }
    int openMain(const char* password = "admin")
    {
        return camera->OpenMainStreamVideo(url().c_str(), "admin", password);
    }
    void setSize(int width, int height)
    {
        for (const char* stream : {"[0]", "[1]"}) {
            sim.setValue(std::string("media_profile_resolution_width") + stream, std::to_string(width));
            sim.setValue(std::string("media_profile_resolution_height") + stream, std::to_string(height));
        }
    }
    void setRate(int framesPerSecond)
    {
        for (const char* key : {"framerate1", "framerate2"})
            sim.setValue(key, std::to_string(framesPerSecond - 1)); // counted from 0
    }
    int openSub() { return camera->OpenSubStreamVideo(url("/sub").c_str(), "admin", "admin"); }
    void watch()
    {
        camera->SetVideoBufCallBack(Viewer::video, &viewer);
        camera->SetAudioBufCallBack(Viewer::audio, &viewer);
    }
    StreamStatus status(bool mainStream = true) const
    {
        StreamStatus status;
        camera->GetStreamStatus(mainStream, &status);
        return status;
    }
    /// How many of the camera's RTSP requests so far had this method.
    std::ptrdiff_t requests(const std::string& method) const
    {
        const auto all = sim.streamRequests();
        return std::count_if(all.begin(), all.end(),
                             [&](const auto& request) { return request.method == method; });
    }

    static constexpr int rate = 25; // frames a second, unless a test sets another
    Viewer viewer;                  // outlives the camera object
    kxsim::SimCamera sim{{.streaming = {.port = 0}}};
    std::shared_ptr<CIpCamera> camera = CIpCameraManager::GetInstance()->AddIpCamera(1000);
};

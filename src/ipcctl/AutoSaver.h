// What a camera saves without being told to at that moment: alarms, and recordings by the clock.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <mutex>

#include "ipcctl/AviRecorder.h"
#include "ipcctl/MotionDetector.h"
#include "ipcctl/PacketSink.h"
#include "ipcctl/SavePlace.h"
#include "ipcctl/Schedule.h"

struct AutoSaveSettings
{
    /// What an alarm saves: bit 0 up to so many pictures, one a look, bit 1 a recording of so many seconds, which the
    /// next alarm lengthens.
    void setSaveType(int type, int pictures, int seconds);

    std::array<unsigned char, MotionDetector::cells> map{};
    int level = 50;
    int spaceTime = 0;
    int images = 0;
    std::chrono::seconds recordingTime{0};
    Schedule motionTimes;
    Schedule autoTimes;
};

/// Watches one stream. Its recordings have nothing to do with those that the application starts. No mutex is held while it
/// saves: what is not called by the stream never waits for a disk.
class AutoSaver final : public PacketSink, public FrameSink
{
public:
    using Clock = MotionDetector::Clock;

    /// What tells the time.
    struct Clocks
    {
        std::function<Clock::time_point()> running = Clock::now;
        std::function<std::time_t()> ofTheWall = [] { return std::time(nullptr); };
    };

    AutoSaver(std::shared_ptr<SavePlace> place, const AutoSaveSettings& settings)
        : AutoSaver(std::move(place), settings, {})
    {
    }
    AutoSaver(std::shared_ptr<SavePlace> place, const AutoSaveSettings& settings, Clocks clocks);

    /// Settings that no longer ask for what is going on end it.
    void follow(const AutoSaveSettings& settings);

    /// Completes the recording; to be called when it has been detached from its stream.
    void stop() { recorder_.stop(); }

    /// The alarms so far, and the recording unless the application has one of its own.
    void addTo(StreamStatus& status) const;

    void begin(const StreamFormat& format) override;
    void takeVideo(const AVPacket& packet, double time) override;
    void takeSound(const AVPacket& packet, double time) override;
    bool wantsFrames() const override { return armed_; }
    void takeFrame(const AVFrame& frame) override;

private:
    bool recordingIsDue();
    bool imageIsDue(const AVFrame& frame);
    void startRecording();
    void noticeFullDisk();
    void alarm(Clock::time_point now);

    const std::shared_ptr<SavePlace> place_;
    const Clocks clocks_;
    std::atomic<bool> armed_{false};
    std::atomic<std::int64_t> alarms_{0};

    // The stream's own.
    StreamFormat format_{};
    AviRecorder recorder_;
    bool begun_ = false; // a recording, that was not to end yet
    Clock::time_point nextTry_{};

    std::mutex mutex_; // guards what follows
    AutoSaveSettings settings_;
    MotionDetector detector_;
    int imagesLeft_ = 0;
    bool alarmed_ = false; // a recording is to begin at the next key frame
    Clock::time_point recordUntil_{};
    std::time_t clockRead_ = 0; // when the times of automatic recordings were asked
    bool clockSaysRecord_ = false;
};

// A recording that plays.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "ipcctl/CallBacks.h"
#include "ipcctl/ColourConverter.h"
#include "ipcctl/PlayClock.h"
#include "ipcctl/RecordFile.h"
#include "ipcctl/SoundDecoder.h"
#include "ipcctl/VideoDecoder.h"

/// One opened file, and a thread that reads, decodes and shows it: the player's thread. It shares the ownership, so that
/// a player can be destroyed within a callback.
class Playback : public std::enable_shared_from_this<Playback>
{
public:
    using Time = RecordFile::Time;

    explicit Playback(std::shared_ptr<CallBacks> callBacks) : callBacks_(std::move(callBacks)) {}
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// False when the file can not be played.
    bool open(const std::string& path);
    /// Begins to play it.
    void start();
    /// Returns when the thread has ended, called by it: when it will show nothing any more.
    void stop();

    Time position() const;
    /// What the file tells, or more when there is more in it.
    Time duration() const;
    bool finished() const;

    void setSpeed(double speed);
    void setRunning(bool running);
    void seek(Time time);

private:
    using Lock = std::unique_lock<std::mutex>;
    using Clock = std::chrono::steady_clock;

    void run();
    void playNext();
    void beginSeek();
    void decode(const AVPacket* packet);
    void takePicture(const AVFrame& frame);
    bool waitFor(Time time);
    void show(const AVFrame& frame, Time time);
    bool comeTo(Time time);
    void takeSound(const RecordedPacket& sound);
    bool playsSound() const;
    void end();
    void finish();
    bool interrupted() const { return stopped_ || seek_; }

    const std::shared_ptr<CallBacks> callBacks_;
    std::atomic<bool> stopped_{false};

    // The player's thread's own.
    RecordFile file_{stopped_};
    VideoDecoder video_;
    SoundDecoder sound_;
    bool soundKnown_ = false;
    ColourConverter converter_;
    Time frameTime_{0};          // between two pictures
    Time shownUntil_{0};         // when the picture after the latest one is due
    std::optional<Time> target_; // pictures before it are not shown
    FramePtr frame_;             // the latest of them

    mutable std::mutex mutex_; // guards what follows
    std::condition_variable changed_;
    PlayClock clock_;
    double speed_ = 1;
    bool atOnce_ = true; // the next picture is shown when it is there, and sets the clock
    bool finished_ = false;
    Clock::time_point lastShow_;
    Time position_{0};
    Time duration_{0};
    std::optional<Time> seek_;

    std::atomic<std::thread::id> runner_{}; // the player's thread
    std::mutex joinMutex_;                  // guards thread_
    std::thread thread_;
};

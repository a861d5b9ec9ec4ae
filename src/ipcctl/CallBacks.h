// The application's callbacks, those of a camera or of a player.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "ipcctl/SoundDecoder.h"
#include "ipcctl/ipcctl.h"

/// A picture for the video callback; without pixels, the end of a recording.
struct ShownPicture
{
    unsigned char* pixels = nullptr;
    int width = 0;
    int height = 0;
    int frameType = 0; // 1: a key frame
    float frameRate = 0;
};

/// Calls them on the threads that have something to show, one call at a time whichever thread it is for: callbacks that
/// set callbacks could otherwise wait for each other. Shared with those threads, so that it outlives an owner that is
/// destroyed within a callback.
class CallBacks
{
public:
    /// @param source told to the callbacks
    explicit CallBacks(void* source) : source_(source) {}

    /// Null: no calls. Returns when no call of the former callback is running and none will come; within a callback,
    /// when none will come after the running one.
    void setVideo(VideoBufCallBack callback, void* user);
    void setAudio(AudioBufCallBack callback, void* user);
    void clear();

    bool wantVideo() const;
    bool wantAudio() const;

    enum class Outcome
    {
        Called,
        Unwanted, // by anybody, or the caller was stopped before its turn came
        Busy      // for too long: a call that does not return must not keep another stream from being read
    };

    Outcome show(const ShownPicture& picture, const std::atomic<bool>& stopped);
    /// Whether it was called. Callers are told apart by their flags: of two that have sound, one is heard, the other when
    /// the first has been silent for a while.
    bool play(const Sound& sound, const std::atomic<bool>& stopped);

    /// To be called after one of those flags was set: no call begins any more for those who it belongs to.
    void noticeStopped();

private:
    template <typename Function>
    struct Target
    {
        Function function = nullptr;
        void* user = nullptr;
    };
    using Lock = std::unique_lock<std::mutex>;

    using Clock = std::chrono::steady_clock;

    bool isHeard(const void* speaker);
    template <typename Function, typename... Arguments>
    Outcome call(const Target<Function>& target, const std::atomic<bool>& stopped, Arguments... arguments);
    void waitForRunning(Lock& lock);

    void* const source_;
    mutable std::mutex mutex_; // guards what follows; never held during a call
    std::condition_variable turn_;
    Target<VideoBufCallBack> video_;
    Target<AudioBufCallBack> audio_;
    std::thread::id running_; // the thread that is within a callback
    std::uint64_t calls_ = 0; // that have ended
    const void* speaker_ = nullptr;
    Clock::time_point lastHeard_{};
};

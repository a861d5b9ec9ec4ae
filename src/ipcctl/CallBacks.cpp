#include "ipcctl/CallBacks.h"

#include "ipcctl/StreamTiming.h"

void CallBacks::setVideo(VideoBufCallBack callback, void* user)
{
    Lock lock(mutex_);
    video_ = {callback, user};
    waitForRunning(lock);
}

void CallBacks::setAudio(AudioBufCallBack callback, void* user)
{
    Lock lock(mutex_);
    audio_ = {callback, user};
    waitForRunning(lock);
}

void CallBacks::clear()
{
    Lock lock(mutex_);
    video_ = {};
    audio_ = {};
    waitForRunning(lock);
}

bool CallBacks::wantVideo() const
{
    const Lock lock(mutex_);
    return video_.function != nullptr;
}

bool CallBacks::wantAudio() const
{
    const Lock lock(mutex_);
    return audio_.function != nullptr;
}

CallBacks::Outcome CallBacks::show(const ShownPicture& picture, const std::atomic<bool>& stopped)
{
    return call(video_, stopped, picture.pixels, picture.width, picture.height, picture.frameType,
                picture.frameRate);
}

bool CallBacks::play(const Sound& sound, const std::atomic<bool>& stopped)
{
    return isHeard(&stopped) &&
           call(audio_, stopped, sound.samples.data(), static_cast<int>(sound.samples.size()),
                sound.channels) == Outcome::Called;
}

bool CallBacks::isHeard(const void* speaker)
{
    constexpr std::chrono::milliseconds silence{500};
    const Lock lock(mutex_);
    const Clock::time_point now = Clock::now();
    if (speaker_ != speaker && now - lastHeard_ < silence)
        return false;
    speaker_ = speaker;
    lastHeard_ = now;
    return true;
}

void CallBacks::noticeStopped()
{
    const Lock lock(mutex_);
    turn_.notify_all();
}

template <typename Function, typename... Arguments>
CallBacks::Outcome CallBacks::call(const Target<Function>& target, const std::atomic<bool>& stopped,
                                   Arguments... arguments)
{
    Lock lock(mutex_);
    const bool free =
        turn_.wait_for(lock, g_streamTiming.late, [&] { return running_ == std::thread::id() || stopped; });
    if (stopped || target.function == nullptr)
        return Outcome::Unwanted;
    if (!free)
        return Outcome::Busy;
    const Target<Function> called = target;
    running_ = std::this_thread::get_id();
    lock.unlock();
    try {
        called.function(source_, called.user, arguments...);
    } catch (...) { // whatever an application throws is not to end the stream, nor to keep its turn for ever
    }
    lock.lock();
    running_ = std::thread::id();
    ++calls_;
    turn_.notify_all();
    return Outcome::Called;
}

/// Not for the calls that come after the running one: there may always be one.
void CallBacks::waitForRunning(Lock& lock)
{
    if (running_ == std::this_thread::get_id())
        return;
    turn_.wait(lock, [this, before = calls_] { return running_ == std::thread::id() || calls_ != before; });
}

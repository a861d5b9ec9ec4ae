#include "ipcctl/Playback.h"

#include <algorithm>
#include <new>

#include "ipcctl/StreamTiming.h"

namespace
{

using namespace std::chrono_literals;

constexpr auto stampPrecision =
    1ms;                          // of times in the interface: the picture at one begins up to so much later
constexpr auto late = 100ms;      // for a picture: at high speeds others are left out then
constexpr auto leastShow = 250ms; // but not for longer
constexpr auto hopelesslyLate = 1s; // the time passes more slowly then

} // namespace

Playback::~Playback()
{
    if (thread_.joinable())
        thread_.detach(); // it is this one, and at its end
}

bool Playback::open(const std::string& path)
{
    frame_.reset(av_frame_alloc());
    if (frame_ == nullptr || !file_.open(path) || !video_.open(file_.video(), VideoDecoder::Delay::AsEncoded))
        return false;
    soundKnown_ = file_.sound() != nullptr && sound_.open(*file_.sound());
    duration_ = file_.duration();
    frameTime_ = std::chrono::duration_cast<Time>(1s / av_q2d(file_.frameRate()));
    clock_.setSpeed(g_streamTiming.playFaster, Clock::now());
    return true;
}

void Playback::start()
{
    thread_ = std::thread([self = shared_from_this()] { self->run(); });
}

void Playback::stop()
{
    {
        const Lock lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }
    callBacks_->noticeStopped();
    if (runner_ == std::this_thread::get_id())
        return;
    const std::lock_guard lock(joinMutex_);
    if (thread_.joinable())
        thread_.join();
}

Playback::Time Playback::position() const
{
    const Lock lock(mutex_);
    return position_;
}

Playback::Time Playback::duration() const
{
    const Lock lock(mutex_);
    return duration_;
}

bool Playback::finished() const
{
    const Lock lock(mutex_);
    return finished_;
}

void Playback::setSpeed(double speed)
{
    const Lock lock(mutex_);
    speed_ = speed;
    clock_.setSpeed(speed * g_streamTiming.playFaster, Clock::now());
    changed_.notify_all();
}

void Playback::setRunning(bool running)
{
    const Lock lock(mutex_);
    clock_.setRunning(running, Clock::now());
    changed_.notify_all();
}

void Playback::seek(Time time)
{
    const Lock lock(mutex_);
    seek_ = std::clamp(time, Time(0), duration_);
    position_ = *seek_;
    finished_ = false;
    changed_.notify_all();
}

void Playback::run()
{
    runner_ = std::this_thread::get_id();
    while (!stopped_) {
        try {
            playNext();
        } catch (const std::bad_alloc&) { // whatever the file has that is so large
            finish();
        }
    }
}

void Playback::playNext()
{
    beginSeek();
    const RecordedPacket next = file_.read();
    if (next.packet == nullptr)
        end();
    else if (next.kind == RecordedPacket::Kind::Video)
        decode(next.packet.get());
    else
        takeSound(next);
}

void Playback::beginSeek()
{
    {
        const Lock lock(mutex_);
        if (!seek_)
            return;
        target_ = *seek_;
        seek_.reset();
        atOnce_ = true;
    }
    file_.seek(*target_);
    video_.flush();
    if (soundKnown_)
        sound_.flush();
    av_frame_unref(frame_.get());
}

void Playback::decode(const AVPacket* packet)
{
    if (!video_.send(packet))
        return;
    while (const AVFrame* frame = video_.receive())
        takePicture(*frame);
}

void Playback::takePicture(const AVFrame& frame)
{
    const std::int64_t stamp = frame.best_effort_timestamp;
    const Time time = stamp != AV_NOPTS_VALUE ? file_.videoTime(stamp) : shownUntil_;
    shownUntil_ = time + frameTime_;
    if (target_ && shownUntil_ < *target_ + stampPrecision) {
        av_frame_unref(frame_.get());
        av_frame_ref(frame_.get(), &frame);
        return;
    }
    target_.reset();
    if (waitFor(time))
        show(frame, time);
}

/// False when something else is to be done now.
bool Playback::waitFor(Time time)
{
    Lock lock(mutex_);
    while (!interrupted() && !atOnce_) {
        const Clock::time_point due = clock_.due(time);
        if (!clock_.running())
            changed_.wait(lock);
        else if (Clock::now() < due)
            changed_.wait_until(lock, due);
        else
            break;
    }
    return !interrupted();
}

void Playback::show(const AVFrame& frame, Time time)
{
    if (!comeTo(time) || !callBacks_->wantVideo())
        return;
    ShownPicture picture{.pixels = converter_.convert(frame),
                         .width = frame.width,
                         .height = frame.height,
                         .frameType = frame.key_frame,
                         .frameRate = static_cast<float>(av_q2d(file_.frameRate()))};
    if (picture.pixels != nullptr)
        callBacks_->show(picture, stopped_);
}

/// False when the picture of this time is not to be shown: there is something else to do, or it is too late for it.
bool Playback::comeTo(Time time)
{
    const Lock lock(mutex_);
    if (interrupted())
        return false;
    position_ = time;
    duration_ = std::max(duration_, shownUntil_);
    const Clock::time_point now = Clock::now();
    const auto delay = now - clock_.due(time);
    if (atOnce_ || delay > hopelesslyLate)
        clock_.jump(time, now);
    else if (speed_ > 1 && delay > late && now - lastShow_ < leastShow)
        return false;
    atOnce_ = false;
    lastShow_ = now;
    return true;
}

void Playback::takeSound(const RecordedPacket& sound)
{
    if (!soundKnown_ || target_ || !callBacks_->wantAudio() || !playsSound() || !waitFor(sound.time))
        return;
    const Sound decoded = sound_.decode(*sound.packet);
    if (!decoded.samples.empty())
        callBacks_->play(decoded, stopped_);
}

/// At other speeds it would be noise; after a seek the picture comes first.
bool Playback::playsSound() const
{
    const Lock lock(mutex_);
    return speed_ == 1 && !atOnce_;
}

/// Shows what the decoder still holds, and lets the last picture have its time.
void Playback::end()
{
    decode(nullptr);
    if (target_ && frame_->width > 0) { // the last picture is the one at the target
        target_.reset();
        takePicture(*frame_);
    }
    if (waitFor(shownUntil_))
        finish();
}

/// The end is told of once; only a seek goes on from there.
void Playback::finish()
{
    {
        const Lock lock(mutex_);
        if (interrupted())
            return;
        finished_ = true;
        position_ = duration_;
    }
    callBacks_->show({}, stopped_);
    Lock lock(mutex_);
    changed_.wait(lock, [this] { return interrupted(); });
}

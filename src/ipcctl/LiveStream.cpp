#include "ipcctl/LiveStream.h"

#include <algorithm>
#include <limits>

#include "ipcctl/StreamTiming.h"

namespace
{

double inMilliseconds(std::int64_t stamp, AVRational base)
{
    return stamp == AV_NOPTS_VALUE ? std::numeric_limits<double>::quiet_NaN()
                                   : static_cast<double>(stamp) * av_q2d(base) * 1000;
}

std::int64_t millisecondsSince1970()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

LiveStream::LiveStream(StreamAddress address, std::shared_ptr<CallBacks> callBacks)
    : address_(std::move(address)), callBacks_(std::move(callBacks)), backlog_(Clock::now()),
      video_(callBacks_, counters_, backlog_, stopped_), videoTime_(Clock::now(), &soundTime_),
      soundTime_(Clock::now(), &videoTime_)
{
}

LiveStream::~LiveStream()
{
    if (reader_.joinable())
        reader_.detach(); // the last owner was the reader itself
}

bool LiveStream::open()
{
    bool open = false;
    {
        std::unique_lock lock(mutex_);
        reader_ = std::thread([self = shared_from_this()] { self->run(); });
        readerId_ = reader_.get_id();
        changed_.wait_for(lock, g_streamTiming.open + g_streamTiming.teardown,
                          [this] { return phase_ != Phase::Opening || stopped_; });
        open = phase_ == Phase::Open && !stopped_;
    }
    if (!open)
        close(closingTime());
    return open;
}

void LiveStream::stop()
{
    stopped_ = true;
    callBacks_->noticeStopped();
    video_.noticeStopped();
    const std::lock_guard lock(mutex_);
    changed_.notify_all();
}

void LiveStream::close(std::chrono::steady_clock::time_point until)
{
    stop();
    std::unique_lock lock(mutex_);
    if (readerId_ == std::this_thread::get_id() || readerId_ == std::thread::id())
        return; // it ends when it comes back, or as soon as it begins
    std::thread reader = std::move(reader_);
    const bool ended = changed_.wait_until(lock, until, [this] { return phase_ == Phase::Ended; });
    lock.unlock();
    if (!reader.joinable())
        return;
    if (ended)
        reader.join();
    else
        reader.detach();
}

StreamStatus LiveStream::status() const
{
    StreamStatus status{};
    status.framesReceived = counters_.framesReceived;
    status.framesDecoded = counters_.framesDecoded;
    status.framesDelivered = counters_.framesDelivered;
    status.framesDropped = counters_.framesDropped;
    status.bytesReceived = counters_.bytesReceived;
    status.reconnects = counters_.reconnects;
    status.lastFrameTime = counters_.lastFrameTime;
    status.width = counters_.width;
    status.height = counters_.height;
    status.connected = counters_.connected;
    status.refused = counters_.refused;
    return status;
}

/// What the reader does. Without memory the stream ends, as if the camera had not agreed to it.
void LiveStream::run()
{
    try {
        keepOpen();
    } catch (const std::exception&) {
    }
    counters_.connected = false;
    enter(Phase::Ended);
}

void LiveStream::keepOpen()
{
    std::chrono::milliseconds untilNext = g_streamTiming.firstPause;
    for (bool first = true; !stopped_; first = false) {
        RtspSource source(stopped_);
        const RtspSource::Opened opened = source.open(address_);
        counters_.refused = opened == RtspSource::Opened::Refused;
        if (opened == RtspSource::Opened::Yes && begin(source)) {
            counters_.reconnects += first ? 0 : 1;
            counters_.connected = true;
            opened_ = true;
            enter(Phase::Open);
            const auto begun = Clock::now();
            receive(source);
            video_.end();
            counters_.connected = false;
            if (Clock::now() - begun > untilNext) // else the camera can not do what it agreed to
                untilNext = g_streamTiming.firstPause;
        } else if (first || counters_.refused) {
            return;
        }
        source.close();
        if (!pause(untilNext))
            return;
        untilNext = std::min(2 * untilNext, g_streamTiming.longestPause);
    }
}

bool LiveStream::begin(const RtspSource& source)
{
    videoTime_.breakOff();
    soundTime_.breakOff();
    rate_ = {};
    backlog_.begin(Clock::now());
    sinks_.beginAnew();
    soundKnown_ = source.sound() != nullptr && sound_.open(*source.sound()->codecpar);
    return source.video() == nullptr ||
           (frames_.open(*source.video()->codecpar) && video_.begin(*source.video()->codecpar));
}

/// Until the stream breaks off or is closed.
void LiveStream::receive(RtspSource& source)
{
    const PacketPtr packet(av_packet_alloc());
    const FrameAssembler::Takers takers{.frame = [&](const AVPacket& frame) { takeFrame(frame, source); },
                                        .wantsUnit = [&] { return video_.beginUnit(); },
                                        .unit = [&](const AVPacket& unit) { video_.takeUnit(unit); },
                                        .startOver = [&] { video_.startOver(); }};
    while (packet != nullptr && read(source, *packet) && !stopped_) {
        counters_.bytesReceived += packet->size;
        if (source.video() != nullptr && packet->stream_index == source.video()->index)
            frames_.take(*packet, takers);
        else if (source.sound() != nullptr && packet->stream_index == source.sound()->index)
            takeSound(*packet, source);
        av_packet_unref(packet.get());
    }
    if (source.video() != nullptr)
        frames_.end(takers);
}

bool LiveStream::read(RtspSource& source, AVPacket& packet)
{
    const auto begun = Clock::now();
    const bool success = source.read(packet);
    backlog_.noteWait(Clock::now() - begun);
    return success;
}

void LiveStream::takeFrame(const AVPacket& frame, const RtspSource& source)
{
    const auto now = Clock::now();
    const double time = videoTime_.place(inMilliseconds(frame.pts, source.video()->time_base), now);
    backlog_.noteFrame(time, now);
    rate_.add(time);
    ++counters_.framesReceived;
    counters_.lastFrameTime = millisecondsSince1970();
    if (!frames_.knowsFormat()) { // nothing can be done with what comes before the first key frame
        video_.startOver();
        return;
    }
    noticeSize();
    sinks_.takeVideo(frame, time, format(source));
    video_.take(frame, static_cast<float>(av_q2d(frameRate())));
}

void LiveStream::noticeSize()
{
    const AVCodecParameters& video = frames_.parameters();
    if (counters_.width == video.width && counters_.height == video.height)
        return;
    counters_.width = video.width;
    counters_.height = video.height;
    sinks_.beginAnew();
}

void LiveStream::takeSound(const AVPacket& packet, const RtspSource& source)
{
    const double time = soundTime_.place(inMilliseconds(packet.pts, source.sound()->time_base), Clock::now());
    sinks_.takeSound(packet, time);
    if (!soundKnown_ || !video_.enabled() || !callBacks_->wantAudio())
        return;
    const Sound sound = sound_.decode(packet);
    if (!sound.samples.empty())
        callBacks_->play(sound, stopped_);
}

StreamFormat LiveStream::format(const RtspSource& source) const
{
    const AVStream* const sound = source.sound();
    return {.video = &frames_.parameters(),
            .videoTimeBase = source.video()->time_base,
            .frameRate = frameRate(),
            .sound = sound != nullptr ? sound->codecpar : nullptr,
            .soundTimeBase = sound != nullptr ? sound->time_base : AVRational{}};
}

AVRational LiveStream::frameRate() const
{
    const AVRational measured = rate_.get();
    return measured.num != 0 ? measured : frames_.frameRate();
}

void LiveStream::enter(Phase phase)
{
    const std::lock_guard lock(mutex_);
    phase_ = phase;
    changed_.notify_all();
}

/// False when the stream was closed meanwhile.
bool LiveStream::pause(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex_);
    return !changed_.wait_for(lock, time, [this] { return stopped_.load(); });
}

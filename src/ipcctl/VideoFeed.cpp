#include "ipcctl/VideoFeed.h"

#include <algorithm>
#include <utility>

#include "ipcctl/StreamTiming.h"

namespace
{

/// The latest picture that can be shown.
FramePtr decodeLast(const AVCodecParameters& parameters, const GopCache::Packets& packets)
{
    FramePtr last(av_frame_alloc());
    LiveDecoder decoder;
    bool found = false;
    if (last == nullptr || !decoder.open(parameters))
        return nullptr;
    for (const PacketPtr& packet : packets) {
        decoder.send(*packet);
        while (const AVFrame* frame = decoder.receive()) {
            av_frame_unref(last.get());
            found = av_frame_ref(last.get(), frame) == 0;
        }
        decoder.endFrame();
    }
    return found ? std::move(last) : nullptr;
}

bool isKeyFrame(const AVPacket& frame)
{
    return (frame.flags & AV_PKT_FLAG_KEY) != 0;
}

} // namespace

bool VideoFeed::begin(const AVCodecParameters& parameters)
{
    end();
    const std::lock_guard lock(mutex_);
    parameters_.reset(avcodec_parameters_alloc());
    return parameters_ != nullptr && avcodec_parameters_copy(parameters_.get(), &parameters) >= 0 &&
           decoder_.open(parameters);
}

/// Decides with a frame's first unit for all of them.
bool VideoFeed::beginUnit()
{
    const bool isFirst = !std::exchange(unitsCame_, true);
    if (isFirst && !decoding_ && gop_.packets().empty())
        decoding_ = wanted(); // there is nothing to catch up with
    return decoding_;
}

void VideoFeed::takeUnit(const AVPacket& unit)
{
    if (decoding_)
        decode(unit, Purpose::Hand);
}

void VideoFeed::take(const AVPacket& frame, float frameRate)
{
    frameRate_ = frameRate;
    const bool decoded = std::exchange(unitsCame_, false) && decoding_;
    if (gop_.hasRoomFor(frame) && !wanted())
        endDecoding();
    else if (!decoding_ && (isKeyFrame(frame) || !gop_.packets().empty()))
        catchUp();
    if (decoding_) {
        if (!decoded)
            decode(frame, Purpose::Hand);
        endFrame();
    }
    keep(frame);
}

void VideoFeed::startOver()
{
    unitsCame_ = false;
    endDecoding();
}

void VideoFeed::end()
{
    startOver();
    const std::lock_guard lock(mutex_);
    gop_.clear();
}

void VideoFeed::attach(std::shared_ptr<FrameSink> sink)
{
    sinks_.attach(std::move(sink));
}

void VideoFeed::detach(const FrameSink& sink)
{
    sinks_.detach([&](const FrameSink& attached) { return &attached == &sink; });
}

FramePtr VideoFeed::latestFrame(std::chrono::milliseconds time)
{
    const auto until = Backlog::Clock::now() + time;
    CodecParametersPtr parameters(avcodec_parameters_alloc());
    GopCache::Packets packets;
    {
        std::unique_lock lock(mutex_);
        waitUntil(until, lock, [this] { return latest_ != nullptr || !gop_.packets().empty(); });
        if (stopped_)
            return nullptr;
        if (latest_ != nullptr)
            return FramePtr(av_frame_clone(latest_.get()));
        if (parameters == nullptr || gop_.packets().empty() ||
            avcodec_parameters_copy(parameters.get(), parameters_.get()) < 0)
            return nullptr;
        for (const PacketPtr& packet : gop_.packets())
            packets.emplace_back(av_packet_clone(packet.get()));
    }
    if (std::ranges::any_of(packets, [](const PacketPtr& packet) { return packet == nullptr; }))
        return nullptr;
    if (FramePtr last = decodeLast(*parameters, packets))
        return last;
    std::unique_lock lock(mutex_); // none can be shown yet
    waitUntil(until, lock, [this] { return latest_ != nullptr; });
    return FramePtr(stopped_ || latest_ == nullptr ? nullptr : av_frame_clone(latest_.get()));
}

/// Meanwhile the reader decodes.
template <typename Condition>
void VideoFeed::waitUntil(Backlog::Clock::time_point until, std::unique_lock<std::mutex>& lock,
                          Condition condition)
{
    ++waiting_;
    pictureThere_.wait_until(lock, until, [&] { return stopped_ || condition(); });
    --waiting_;
}

void VideoFeed::noticeStopped()
{
    const std::lock_guard lock(mutex_);
    pictureThere_.notify_all();
}

bool VideoFeed::wanted()
{
    if ((enabled_ && callBacks_->wantVideo()) || waiting_ > 0)
        return true;
    return sinks_.any([](const FrameSink& sink) { return sink.wantsFrames(); });
}

void VideoFeed::keep(const AVPacket& frame)
{
    const std::lock_guard lock(mutex_);
    gop_.add(frame);
    if (gop_.packets().size() == 1)
        pictureThere_.notify_all();
}

/// From the latest key frame on, so that the next picture is there at once.
void VideoFeed::catchUp()
{
    decoding_ = true;
    for (const PacketPtr& packet : gop_.packets()) {
        decode(*packet, Purpose::CatchUp);
        decoder_.endFrame();
    }
}

void VideoFeed::endDecoding()
{
    if (!decoding_)
        return;
    decoding_ = false;
    decoder_.flush();
    const std::lock_guard lock(mutex_);
    latest_.reset();
}

void VideoFeed::decode(const AVPacket& packet, Purpose purpose)
{
    decoder_.send(packet);
    while (const AVFrame* frame = decoder_.receive()) {
        ++counters_.framesDecoded;
        if (purpose == Purpose::Hand)
            hand(*frame);
    }
}

void VideoFeed::endFrame()
{
    if (!decoder_.endFrame())
        ++counters_.framesDropped;
}

void VideoFeed::hand(const AVFrame& frame)
{
    {
        const std::lock_guard lock(mutex_);
        latest_.reset(av_frame_clone(&frame));
        if (waiting_ > 0)
            pictureThere_.notify_all();
    }
    sinks_.each([&](FrameSink& sink) {
        if (sink.wantsFrames())
            sink.takeFrame(frame);
    });
    if (enabled_ && callBacks_->wantVideo())
        callBack(frame);
}

/// What comes late is left out, so that the reader catches up, but for a picture now and then.
void VideoFeed::callBack(const AVFrame& frame)
{
    const auto now = Backlog::Clock::now();
    if (backlog_.isLate() && now - lastShown_ < g_streamTiming.longestBlank) {
        ++counters_.framesDropped;
        return;
    }
    lastShown_ = now;
    std::uint8_t* const pixels = converter_.convert(frame);
    if (pixels == nullptr)
        return;
    const ShownPicture picture{pixels, frame.width, frame.height, frame.key_frame, frameRate_};
    const CallBacks::Outcome outcome = callBacks_->show(picture, stopped_);
    counters_.framesDelivered += outcome == CallBacks::Outcome::Called;
    counters_.framesDropped += outcome == CallBacks::Outcome::Busy;
}

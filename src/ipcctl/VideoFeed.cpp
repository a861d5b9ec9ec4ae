#include "ipcctl/VideoFeed.h"

#include <algorithm>

namespace
{

/// The picture of the last packet, as far as it is undamaged; else the one before.
FramePtr decodeLast(const AVCodecParameters& parameters, const GopCache::Packets& packets)
{
    FramePtr last(av_frame_alloc());
    VideoDecoder decoder;
    bool found = false;
    if (last == nullptr || !decoder.open(parameters, VideoDecoder::Delay::None))
        return nullptr;
    for (const PacketPtr& packet : packets) {
        decoder.send(packet.get());
        while (const AVFrame* frame = decoder.receive()) {
            if (isDamaged(*frame))
                continue;
            av_frame_unref(last.get());
            found = av_frame_ref(last.get(), frame) == 0;
        }
    }
    return found ? std::move(last) : nullptr;
}

} // namespace

bool VideoFeed::begin(const AVCodecParameters& parameters)
{
    endDecoding();
    const std::lock_guard lock(mutex_);
    gop_.clear();
    parameters_.reset(avcodec_parameters_alloc());
    return parameters_ != nullptr && avcodec_parameters_copy(parameters_.get(), &parameters) >= 0 &&
           decoder_.open(parameters, VideoDecoder::Delay::None);
}

void VideoFeed::take(const AVPacket& packet, float frameRate)
{
    keep(packet);
    frameRate_ = frameRate;
    if (!wanted())
        endDecoding();
    else if (decoding_)
        decode(packet, true);
    else
        beginDecoding();
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
    CodecParametersPtr parameters(avcodec_parameters_alloc());
    GopCache::Packets packets;
    {
        std::unique_lock lock(mutex_);
        pictureThere_.wait_for(lock, time, [this] { return stopped_ || !gop_.packets().empty(); });
        if (stopped_ || gop_.packets().empty())
            return nullptr;
        if (latest_ != nullptr)
            return FramePtr(av_frame_clone(latest_.get()));
        if (parameters == nullptr || avcodec_parameters_copy(parameters.get(), parameters_.get()) < 0)
            return nullptr;
        for (const PacketPtr& packet : gop_.packets())
            packets.emplace_back(av_packet_clone(packet.get()));
    }
    if (std::ranges::any_of(packets, [](const PacketPtr& packet) { return packet == nullptr; }))
        return nullptr;
    return decodeLast(*parameters, packets);
}

void VideoFeed::noticeStopped()
{
    const std::lock_guard lock(mutex_);
    pictureThere_.notify_all();
}

bool VideoFeed::wanted()
{
    if (enabled_ && callBacks_->wantVideo())
        return true;
    return sinks_.any([](const FrameSink& sink) { return sink.wantsFrames(); });
}

void VideoFeed::keep(const AVPacket& packet)
{
    const std::lock_guard lock(mutex_);
    gop_.add(packet);
    if (gop_.packets().size() == 1)
        pictureThere_.notify_all();
}

/// Catches up from the latest key frame, so that the next picture is there at once.
void VideoFeed::beginDecoding()
{
    if (!gop_.isWhole())
        return;
    decoding_ = true;
    const GopCache::Packets& packets = gop_.packets();
    for (const PacketPtr& packet : packets)
        decode(*packet, packet == packets.back());
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

void VideoFeed::decode(const AVPacket& packet, bool show)
{
    if (!decoder_.send(&packet)) {
        ++counters_.framesDropped;
        return;
    }
    while (const AVFrame* frame = decoder_.receive()) {
        ++counters_.framesDecoded;
        if (isDamaged(*frame))
            ++counters_.framesDropped;
        else if (show)
            hand(*frame);
    }
}

void VideoFeed::hand(const AVFrame& frame)
{
    {
        const std::lock_guard lock(mutex_);
        latest_.reset(av_frame_clone(&frame));
    }
    sinks_.each([&](FrameSink& sink) {
        if (sink.wantsFrames())
            sink.takeFrame(frame);
    });
    if (enabled_ && callBacks_->wantVideo())
        show(frame);
}

void VideoFeed::show(const AVFrame& frame)
{
    std::uint8_t* const pixels = converter_.convert(frame);
    if (pixels == nullptr)
        return;
    const ShownPicture picture{pixels, frame.width, frame.height, frame.key_frame, frameRate_};
    if (callBacks_->show(picture, stopped_))
        ++counters_.framesDelivered;
}

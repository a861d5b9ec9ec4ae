// A plain client for live streams, made of FFmpeg's libraries and nothing of the project.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <KxSim/Streaming.h>

/// Watches from construction to destruction.
class StreamViewer
{
public:
    using Clock = std::chrono::steady_clock;

    struct Frame
    {
        std::optional<unsigned> number{};
        int width = 0;
        int height = 0;
        double time = 0; ///< seconds
    };

    /// Gives up when the time is over or it is told to, as all else does that waits here.
    explicit StreamViewer(
        const std::string& url, const std::string& transport = "tcp",
        std::chrono::milliseconds patience = std::chrono::seconds(20),
        std::function<bool()> giveUp = [] { return false; })
        : input_(avformat_alloc_context()), giveUp_(std::move(giveUp))
    {
        await(patience);
        input_->interrupt_callback = {
            [](void* self) { return static_cast<StreamViewer*>(self)->hasEnough() ? 1 : 0; }, this};
        AVDictionary* options = nullptr;
        av_dict_set(&options, "rtsp_transport", transport.c_str(), 0);
        error_ = avformat_open_input(&input_, url.c_str(), nullptr, &options);
        av_dict_free(&options);
        if (error_ == 0)
            openDecoder();
    }

    ~StreamViewer()
    {
        sws_freeContext(scaler_);
        avcodec_free_context(&decoder_);
        avformat_close_input(&input_);
        av_packet_free(&packet_);
        av_frame_free(&frame_);
    }

    StreamViewer(const StreamViewer&) = delete;
    StreamViewer& operator=(const StreamViewer&) = delete;

    int error() const { return error_; }
    /// The stream of a kind, or none.
    const AVCodecParameters* stream(AVMediaType type) const
    {
        for (unsigned i = 0; error_ == 0 && i < input_->nb_streams; ++i)
            if (input_->streams[i]->codecpar->codec_type == type)
                return input_->streams[i]->codecpar;
        return nullptr;
    }
    void await(std::chrono::milliseconds patience) { deadline_ = Clock::now() + patience; }

    /// The next packet of this kind; none when the stream ends, breaks or keeps one waiting.
    const AVPacket* nextPacket(AVMediaType type = AVMEDIA_TYPE_VIDEO)
    {
        do {
            av_packet_unref(packet_);
            if (av_read_frame(input_, packet_) < 0)
                return nullptr;
        } while (input_->streams[packet_->stream_index]->codecpar->codec_type != type);
        return packet_;
    }

    /// The next frame that can be decoded, scaled to a part of its size; none as above.
    std::optional<Frame> nextFrame(int part = 1)
    {
        while (avcodec_receive_frame(decoder_, frame_) != 0) {
            const AVPacket* const packet = nextPacket();
            if (!packet)
                return std::nullopt;
            avcodec_send_packet(decoder_, packet);
        }
        const AVRational base = input_->streams[packet_->stream_index]->time_base;
        return Frame{numberOf(part), frame_->width, frame_->height,
                     static_cast<double>(frame_->pts) * av_q2d(base)};
    }

private:
    bool hasEnough() const { return Clock::now() > deadline_ || giveUp_(); }

    void openDecoder()
    {
        const AVCodecParameters* const video = stream(AVMEDIA_TYPE_VIDEO);
        const AVCodec* const codec = video ? avcodec_find_decoder(video->codec_id) : nullptr;
        decoder_ = avcodec_alloc_context3(codec);
        decoder_->flags |= AV_CODEC_FLAG_LOW_DELAY;
        decoder_->thread_count = 1;
        if (codec && avcodec_parameters_to_context(decoder_, video) == 0)
            avcodec_open2(decoder_, codec, nullptr);
    }

    std::optional<unsigned> numberOf(int part)
    {
        const int width = frame_->width / part;
        const int height = frame_->height / part;
        std::vector<unsigned char> bgr(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                                       3);
        unsigned char* const planes[] = {bgr.data()};
        const int strides[] = {width * 3};
        scaler_ = sws_getCachedContext(scaler_, frame_->width, frame_->height,
                                       static_cast<AVPixelFormat>(frame_->format), width, height,
                                       AV_PIX_FMT_BGR24, SWS_BILINEAR, nullptr, nullptr, nullptr);
        sws_scale(scaler_, frame_->data, frame_->linesize, 0, frame_->height, planes, strides);
        return kxsim::frameNumberOf(bgr.data(), width, height);
    }

    AVFormatContext* input_;
    std::function<bool()> giveUp_;
    AVCodecContext* decoder_ = nullptr;
    AVPacket* packet_ = av_packet_alloc();
    AVFrame* frame_ = av_frame_alloc();
    SwsContext* scaler_ = nullptr;
    Clock::time_point deadline_;
    int error_ = 0;
};

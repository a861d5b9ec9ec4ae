// The floor: the plain loop around FFmpeg's libraries that an application without the SDK would begin with. It receives,
// decodes and converts on one thread, without time limits, a callback or a way to end it from outside.
#pragma once

#include <memory>

#include "../Endpoint.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

/// A camera's main stream. Members throw std::runtime_error.
class FloorStream
{
public:
    enum class Probing
    {
        No, // the stream's description is enough, as it is for the SDK
        Yes // as one finds it in FFmpeg's examples
    };

    explicit FloorStream(const Endpoint& camera, Probing probing = Probing::No);

    /// The next picture, packed 24-bit colour, blue first; valid until the next call.
    const std::uint8_t* next();

private:
    struct Free
    {
        void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
        void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
        void operator()(AVPacket* packet) const { av_packet_free(&packet); }
        void operator()(AVFrame* frame) const { av_frame_free(&frame); }
        void operator()(SwsContext* converter) const { sws_freeContext(converter); }
        void operator()(std::uint8_t* bytes) const { av_free(bytes); }
    };
    template <typename Object>
    using Owned = std::unique_ptr<Object, Free>;

    void openInput(const Endpoint& camera);
    void openDecoder();
    void decodeOne();
    void prepareConversion();

    Owned<AVFormatContext> input_;
    Owned<AVCodecContext> decoder_;
    Owned<AVPacket> packet_{av_packet_alloc()};
    Owned<AVFrame> frame_{av_frame_alloc()};
    Owned<SwsContext> converter_;
    Owned<std::uint8_t> picture_;
    int video_ = -1;
};

// Owners of FFmpeg's objects.
#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

/// Frees an object by a function of FFmpeg's that takes the pointer's address.
template <auto Free>
struct AvFree
{
    template <typename Object>
    void operator()(Object* object) const
    {
        Free(&object);
    }
};

struct SwsFree
{
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using CodecContextPtr = std::unique_ptr<AVCodecContext, AvFree<avcodec_free_context>>;
using CodecParametersPtr = std::unique_ptr<AVCodecParameters, AvFree<avcodec_parameters_free>>;
using PacketPtr = std::unique_ptr<AVPacket, AvFree<av_packet_free>>;
using FramePtr = std::unique_ptr<AVFrame, AvFree<av_frame_free>>;
using SwsPtr = std::unique_ptr<SwsContext, SwsFree>;
using SwrPtr = std::unique_ptr<SwrContext, AvFree<swr_free>>;
/// Of a file or stream that is read.
using InputPtr = std::unique_ptr<AVFormatContext, AvFree<avformat_close_input>>;

/// Keep what FFmpeg has to say about damaged data off the application's standard error, and leave alone what it says
/// where the application itself uses it.
void silence(AVCodecContext& context);
void silence(AVFormatContext& input);

#include "ipcctl/VideoDecoder.h"

bool VideoDecoder::open(const AVCodecParameters& parameters, Delay delay)
{
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    frame_.reset(av_frame_alloc());
    context_.reset(avcodec_alloc_context3(codec));
    if (codec == nullptr || frame_ == nullptr || context_ == nullptr ||
        avcodec_parameters_to_context(context_.get(), &parameters) < 0)
        return false;
    silence(*context_);
    context_->thread_count =
        1; // several would hold pictures back, and a console has more streams than processors
    context_->max_pixels = mostPixels;
    if (delay == Delay::None)
        context_->flags |= AV_CODEC_FLAG_LOW_DELAY;
    return avcodec_open2(context_.get(), codec, nullptr) == 0;
}

bool VideoDecoder::send(const AVPacket* packet)
{
    return avcodec_send_packet(context_.get(), packet) == 0;
}

const AVFrame* VideoDecoder::receive()
{
    return avcodec_receive_frame(context_.get(), frame_.get()) == 0 ? frame_.get() : nullptr;
}

void VideoDecoder::flush()
{
    avcodec_flush_buffers(context_.get());
}

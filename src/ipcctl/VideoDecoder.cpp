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
    countsRows_ = delay == Delay::None && codec->id == AV_CODEC_ID_H264;
    if (countsRows_)
        takeInPieces();
    rows_ = 0;
    return avcodec_open2(context_.get(), codec, nullptr) == 0;
}

/// FFmpeg's decoder would conceal, after each piece, that the others are not there yet: three times the work. Without that,
/// it takes each slice but the first for one whose predecessor is missing. What tells instead is that rows are missing.
void VideoDecoder::takeInPieces()
{
    context_->flags2 |= AV_CODEC_FLAG2_CHUNKS;
    context_->error_concealment = 0;
    context_->draw_horiz_band = countRows;
    context_->opaque = this;
}

void VideoDecoder::countRows(AVCodecContext* context, const AVFrame*, int*, int, int, int height)
{
    static_cast<VideoDecoder*>(context->opaque)->rows_ += height;
}

bool VideoDecoder::send(const AVPacket* packet)
{
    return context_ != nullptr && avcodec_send_packet(context_.get(), packet) == 0;
}

const AVFrame* VideoDecoder::receive()
{
    return context_ != nullptr && avcodec_receive_frame(context_.get(), frame_.get()) == 0 ? frame_.get()
                                                                                           : nullptr;
}

bool VideoDecoder::isDamaged(bool slices) const
{
    const int told =
        frame_->decode_error_flags & (countsRows_ && slices ? ~FF_DECODE_ERROR_DECODE_SLICES : ~0);
    return told != 0 || lacksRows() || (frame_->flags & AV_FRAME_FLAG_CORRUPT) != 0;
}

void VideoDecoder::flush()
{
    avcodec_flush_buffers(context_.get());
    rows_ = 0;
}

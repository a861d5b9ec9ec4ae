// From compressed video to pictures.
#pragma once

#include <cstdint>

#include "ipcctl/Av.h"

/// Larger pictures than any camera's are a damaged stream's, and would take all memory.
inline constexpr std::int64_t mostPixels = 8192 * 8192;

/// Decodes on the caller's thread; one thread at a time.
class VideoDecoder
{
public:
    /// Whether a picture comes out with its own packet, or later if those that come after it may be shown before it.
    enum class Delay
    {
        None,     // for cameras, which send pictures in the order in which they are shown
        AsEncoded // for recordings of any origin
    };

    VideoDecoder() = default;
    VideoDecoder(const VideoDecoder&) = delete; // FFmpeg's decoder knows where it is
    VideoDecoder& operator=(const VideoDecoder&) = delete;

    /// False when there is no decoder for it. May be called again.
    bool open(const AVCodecParameters& parameters, Delay delay);

    /// Takes a packet, beginning at a key frame, or null for the end, after which the pictures held back come out. Of
    /// H.264 without delay, a packet may be a part of a frame, some units: its picture is there with the one that reaches
    /// the bottom.
    /// False when it can not be decoded.
    bool send(const AVPacket* packet);

    /// The next picture, or null when there is none before another packet. Valid until the next call.
    const AVFrame* receive();

    /// Forgets what came before: the next packet is a key frame from somewhere else.
    void flush();

    /// By how many packets pictures come out later than theirs, as far as is known.
    int delay() const { return context_ != nullptr ? context_->has_b_frames : 0; }
    /// Whether parts of the picture that was received last were lost, or something that it refers to.
    /// @param slices  it may consist of several
    bool isDamaged(bool slices) const;
    /// Of H.264 without delay: whether a part is missing of what was decoded since beginPicture.
    bool lacksRows() const { return countsRows_ && context_ != nullptr && rows_ < context_->height; }
    void beginPicture() { rows_ = 0; }

private:
    void takeInPieces();
    static void countRows(AVCodecContext* context, const AVFrame* frame, int* offset, int y, int type,
                          int height);

    bool countsRows_ = false;
    int rows_ = 0; // of pixels
    CodecContextPtr context_;
    FramePtr frame_;
};

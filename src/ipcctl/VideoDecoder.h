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

    /// False when there is no decoder for it.
    bool open(const AVCodecParameters& parameters, Delay delay);

    /// Takes a packet, beginning at a key frame, or null for the end, after which the pictures held back come out.
    /// False when it can not be decoded.
    bool send(const AVPacket* packet);

    /// The next picture, or null when there is none before another packet. Valid until the next call.
    const AVFrame* receive();

    /// Forgets what came before: the next packet is a key frame from somewhere else.
    void flush();

private:
    CodecContextPtr context_;
    FramePtr frame_;
};

/// Whether parts of a picture were lost, or something that it refers to.
inline bool isDamaged(const AVFrame& frame)
{
    return frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0;
}

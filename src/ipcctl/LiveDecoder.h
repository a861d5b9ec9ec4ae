// From the video of a live stream, from which something may be missing, to the pictures that can be shown.
#pragma once

#include "ipcctl/FrameNumbers.h"
#include "ipcctl/VideoDecoder.h"

/// After something was lost, nothing comes out until a picture needs nothing of what was before: that of a key frame, or
/// where a camera has none, when all parts of the picture have been refreshed.
class LiveDecoder
{
public:
    /// False when there is no decoder for it.
    bool open(const AVCodecParameters& parameters);

    /// Takes a frame, or the next unit of one where H.264 comes in units.
    void send(const AVPacket& packet);
    /// The next undamaged picture, or null when there is none before another packet. Valid until the next call.
    const AVFrame* receive();
    /// To be called after all of a frame; false when there will be no picture of it.
    bool endFrame();

    /// Begins anew, with a key frame.
    void flush();

private:
    enum class State
    {
        Beginning, // no picture yet
        Flowing,
        Lost
    };

    void lose();
    void renewDecoder();

    CodecParametersPtr parameters_;
    VideoDecoder decoder_;
    FrameNumbers numbers_;
    State state_ = State::Beginning;
    bool recovers_ = false; // without key frames, if need be; the decoder knows when
    bool shown_ = false;    // the frame
};

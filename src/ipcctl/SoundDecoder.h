// From compressed sound to samples.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include <neaacdec.h>

#include "ipcctl/Av.h"

/// So many samples in all, those of the channels in turn.
struct Sound
{
    std::span<short> samples{};
    int channels = 0;
    int sampleRate = 0;
};

/// Decodes AAC by the functions that the application can call too, other sound by FFmpeg. One thread at a time.
class SoundDecoder
{
public:
    /// False when there is no decoder for it.
    bool open(const AVCodecParameters& parameters);

    /// What the packet holds, valid until the next call; nothing when it can not be decoded, or not yet.
    Sound decode(const AVPacket& packet);

    /// Forgets what came before: the next packet is from somewhere else.
    void flush();

private:
    struct AacFree
    {
        void operator()(void* decoder) const { NeAACDecClose(decoder); }
    };

    bool openAac(const AVCodecParameters& parameters);
    bool openOther(const AVCodecParameters& parameters);
    bool beginAac(const AVPacket& packet);
    Sound decodeAac(const AVPacket& packet);
    Sound decodeOther(const AVPacket& packet);
    bool append(AVFrame& frame);
    bool adaptTo(AVFrame& frame);

    std::unique_ptr<void, AacFree> aac_;
    bool aacBegun_ = false; // the decoder knows what it decodes

    CodecContextPtr other_;
    FramePtr frame_;
    SwrPtr converter_;
    int format_ = AV_SAMPLE_FMT_NONE; // what the converter takes
    int channels_ = 0;
    int sampleRate_ = 0;
    std::vector<short> samples_;
};

// What an open stream hands on, besides calling the application back: packets as they come, and decoded pictures.
//
// Sinks are attached to a stream and called on its reader thread, one call at a time. Detaching returns when no call is
// running and none will come. A sink must not call the stream.
#pragma once

#include "ipcctl/Av.h"

/// What a stream consists of. Holds until the next begin, or until the sink is detached.
struct StreamFormat
{
    const AVCodecParameters* video = nullptr; // with width, height and, where it was told, extradata
    AVRational videoTimeBase{};
    AVRational frameRate{};                   // measured, or what the stream says of itself; 0/1: unknown
    const AVCodecParameters* sound = nullptr; // null: none
    AVRational soundTimeBase{};
};

/// Gets packets, not decoded. The first is a key frame; sound from before it is left out.
class PacketSink
{
public:
    virtual ~PacketSink() = default;

    /// Before the first packet, and again before the first of a stream that was opened anew or changed its format.
    virtual void begin(const StreamFormat& format) = 0;
    /// `time` is a packet's time in milliseconds: it never falls within video or within sound, goes on where the stream
    /// broke off when it is opened anew, and has no jumps of more than the pause that caused them. The packet's own
    /// time stamps are the camera's, and may do all that.
    virtual void takeVideo(const AVPacket& packet, double time) = 0;
    virtual void takeSound(const AVPacket& packet, double time) = 0;
};

/// Gets decoded pictures, undamaged ones only; while it wants them, the stream is decoded for it if for nobody else.
class FrameSink
{
public:
    virtual ~FrameSink() = default;

    /// Asked before each packet that is to be decoded.
    virtual bool wantsFrames() const = 0;
    /// The frame is valid during the call; av_frame_ref keeps it.
    virtual void takeFrame(const AVFrame& frame) = 0;
};

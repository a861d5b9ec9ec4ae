// A stream of a camera, as RTSP delivers it.
#pragma once

#include <atomic>
#include <string>

#include "ipcctl/Av.h"
#include "ipcctl/Deadline.h"
#include "ipcctl/ipcctl.h"

/// Where a stream is, and who asks for it.
struct StreamAddress
{
    std::string url; // "rtsp://host:port/path", without user and password
    std::string user;
    std::string password;
    StreamTransport transport = StreamTransport::Tcp;
};

/// What FFmpeg takes: the address with user and password in it, percent-encoded. It must not be shown or logged; on
/// the wire they stand in the answer to the camera's challenge only. Empty when FFmpeg could not take it.
std::string urlWithCredentials(const StreamAddress& address);

/// One RTSP session. Belongs to one thread; every step ends in time, or soon after it was stopped.
class RtspSource
{
public:
    enum class Opened
    {
        Yes,
        No,
        Refused // user and password are wrong
    };

    explicit RtspSource(const std::atomic<bool>& stopped) : deadline_(stopped) {}
    /// Tells the camera that the stream ends.
    ~RtspSource() { close(); }
    RtspSource(const RtspSource&) = delete;
    RtspSource& operator=(const RtspSource&) = delete;

    /// Gets the stream's description and has the camera send it. What the stream is made of is taken from there: no
    /// packet is waited for.
    Opened open(const StreamAddress& address);

    /// The next packet, of video perhaps a piece of a frame; false when the stream has broken off, or only sound comes.
    bool read(AVPacket& packet);

    /// Null when the stream has none.
    const AVStream* video() const { return video_; }
    const AVStream* sound() const { return sound_; }

    void close();

private:
    const AVStream* first(AVMediaType type) const;

    Deadline deadline_;
    InputPtr input_;
    const AVStream* video_ = nullptr;
    const AVStream* sound_ = nullptr;
    bool onlyKeyFrames_ = false; // the video's every frame is one
    Deadline::Clock::time_point lastVideo_{};
};

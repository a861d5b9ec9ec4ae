// A stream of a camera, from opening to closing.
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "ipcctl/Backlog.h"
#include "ipcctl/CallBacks.h"
#include "ipcctl/FrameAssembler.h"
#include "ipcctl/PacketSinks.h"
#include "ipcctl/RateMeter.h"
#include "ipcctl/RtspSource.h"
#include "ipcctl/SoundDecoder.h"
#include "ipcctl/StreamCounters.h"
#include "ipcctl/TimeLine.h"
#include "ipcctl/VideoFeed.h"

/// A thread of its own, the reader, opens the stream, hands on what comes and, when the stream breaks off, opens it anew
/// after pauses that grow. The reader shares the ownership of the stream: where something holds it beyond all time
/// limits (the resolution of a name, the application's callback), it is left behind and ends by itself.
class LiveStream : public std::enable_shared_from_this<LiveStream>
{
public:
    LiveStream(StreamAddress address, std::shared_ptr<CallBacks> callBacks);
    ~LiveStream();
    LiveStream(const LiveStream&) = delete;
    LiveStream& operator=(const LiveStream&) = delete;

    /// Starts the reader and waits until the camera has agreed to send. Otherwise the stream is closed, for good.
    bool open();
    /// No callback is called any more, and the reader ends as soon as it can; does not wait for it.
    void stop();
    /// Stops, and waits for the reader up to this time. May be called on any thread, the reader included, and twice.
    void close(std::chrono::steady_clock::time_point until);

    /// Whether the camera had agreed; stays true while the stream is broken off.
    bool opened() const { return opened_; }
    VideoFeed& video() { return video_; }
    PacketSinks& packets() { return sinks_; }
    StreamStatus status() const;

private:
    using Clock = TimeLine::Clock;
    enum class Phase
    {
        Opening,
        Open,
        Ended
    };

    void run();
    void keepOpen();
    bool begin(const RtspSource& source);
    void receive(RtspSource& source);
    bool read(RtspSource& source, AVPacket& packet);
    void takeFrame(const AVPacket& frame, const RtspSource& source);
    void takeSound(const AVPacket& packet, const RtspSource& source);
    void noticeSize();
    StreamFormat format(const RtspSource& source) const;
    AVRational frameRate() const;
    void enter(Phase phase);
    bool pause(std::chrono::milliseconds time);

    const StreamAddress address_;
    const std::shared_ptr<CallBacks> callBacks_;
    StreamCounters counters_;
    std::atomic<bool> stopped_{false};
    std::atomic<bool> opened_{false};

    // The reader's own.
    Backlog backlog_;
    VideoFeed video_;
    PacketSinks sinks_;
    SoundDecoder sound_;
    bool soundKnown_ = false; // there is a decoder for it
    FrameAssembler frames_;
    RateMeter rate_;
    TimeLine videoTime_;
    TimeLine soundTime_;

    std::mutex mutex_; // guards what follows
    std::condition_variable changed_;
    Phase phase_ = Phase::Opening;
    std::thread reader_;
    std::thread::id readerId_;
};

// From a stream's video packets to pictures, for those who want them.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "ipcctl/Backlog.h"
#include "ipcctl/CallBacks.h"
#include "ipcctl/ColourConverter.h"
#include "ipcctl/GopCache.h"
#include "ipcctl/LiveDecoder.h"
#include "ipcctl/PacketSink.h"
#include "ipcctl/Sinks.h"
#include "ipcctl/StreamCounters.h"

/// Decodes while somebody wants pictures, else keeps what is needed to begin with the latest one at any time; where that
/// would be too much, it decodes too. Of a stream whose frames come in units, each unit is decoded as it comes: the
/// picture is there before the next frame begins, which is what tells that the frame is whole.
///
/// begin, beginUnit, end, startOver and what takes belong to the stream's reader.
class VideoFeed
{
public:
    /// @param backlog  while it is late, pictures do not go to the callback
    /// @param stopped  no callback is called any more
    VideoFeed(std::shared_ptr<CallBacks> callBacks, StreamCounters& counters, const Backlog& backlog,
              const std::atomic<bool>& stopped)
        : callBacks_(std::move(callBacks)), counters_(counters), backlog_(backlog), stopped_(stopped)
    {
    }

    /// A stream begins whose video is like this.
    bool begin(const AVCodecParameters& parameters);
    /// A unit of the frame that is coming begins. Whether it is to be taken: all of a frame's are, or none.
    bool beginUnit();
    /// Before the frame itself.
    void takeUnit(const AVPacket& unit);
    void take(const AVPacket& frame, float frameRate);
    /// The units taken since the last frame were no good, or that frame itself will not be taken.
    void startOver();
    /// The stream has broken off: there is no latest picture.
    void end();

    /// Whether the video callback gets pictures, as at first.
    void enable(bool enabled) { enabled_ = enabled; }
    bool enabled() const { return enabled_; }
    /// Never waits.
    void attach(std::shared_ptr<FrameSink> sink);
    /// Returns when no call of it is running and none will come. Harmless when it is not attached.
    void detach(const FrameSink& sink);

    /// The latest picture, decoded on this thread if nobody else wants it. Null when there is none within the time, or
    /// the stream is stopped meanwhile.
    FramePtr latestFrame(std::chrono::milliseconds time);
    /// To be called after the flag was set.
    void noticeStopped();

private:
    enum class Purpose
    {
        Hand,   // the pictures on
        CatchUp // only for the pictures that come after it
    };

    template <typename Condition>
    void waitUntil(Backlog::Clock::time_point until, std::unique_lock<std::mutex>& lock, Condition condition);
    bool wanted();
    void keep(const AVPacket& frame);
    void catchUp();
    void endDecoding();
    void decode(const AVPacket& packet, Purpose purpose);
    void endFrame();
    void hand(const AVFrame& frame);
    void callBack(const AVFrame& frame);

    const std::shared_ptr<CallBacks> callBacks_;
    StreamCounters& counters_;
    const Backlog& backlog_;
    const std::atomic<bool>& stopped_;
    std::atomic<bool> enabled_{true};

    // The reader's own.
    LiveDecoder decoder_;
    ColourConverter converter_;
    bool decoding_ = false;
    bool unitsCame_ = false; // of the frame that is coming
    Backlog::Clock::time_point lastShown_{};
    float frameRate_ = 0;

    Sinks<FrameSink> sinks_;

    std::mutex mutex_; // guards what follows
    std::condition_variable pictureThere_;
    CodecParametersPtr parameters_;
    GopCache gop_;                // changed by the reader only, who reads it without the mutex
    FramePtr latest_;             // null while nothing is decoded
    std::atomic<int> waiting_{0}; // for the first picture; read without the mutex
};

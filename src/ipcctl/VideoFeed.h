// From a stream's video packets to pictures, for those who want them.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "ipcctl/CallBacks.h"
#include "ipcctl/ColourConverter.h"
#include "ipcctl/GopCache.h"
#include "ipcctl/PacketSink.h"
#include "ipcctl/Sinks.h"
#include "ipcctl/StreamCounters.h"
#include "ipcctl/VideoDecoder.h"

/// Decodes while somebody wants pictures, else keeps what is needed to begin with the latest one at any time. begin, take
/// and end belong to the stream's reader.
class VideoFeed
{
public:
    /// @param stopped  no callback is called any more
    VideoFeed(std::shared_ptr<CallBacks> callBacks, StreamCounters& counters,
              const std::atomic<bool>& stopped)
        : callBacks_(std::move(callBacks)), counters_(counters), stopped_(stopped)
    {
    }

    /// A stream begins whose video is like this.
    bool begin(const AVCodecParameters& parameters);
    void take(const AVPacket& packet, float frameRate);

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
    bool wanted();
    void keep(const AVPacket& packet);
    void beginDecoding();
    void endDecoding();
    void decode(const AVPacket& packet, bool show);
    void hand(const AVFrame& frame);
    void show(const AVFrame& frame);

    const std::shared_ptr<CallBacks> callBacks_;
    StreamCounters& counters_;
    const std::atomic<bool>& stopped_;
    std::atomic<bool> enabled_{true};

    // The reader's own.
    VideoDecoder decoder_;
    ColourConverter converter_;
    bool decoding_ = false;
    float frameRate_ = 0;

    Sinks<FrameSink> sinks_;

    std::mutex mutex_; // guards what follows
    std::condition_variable pictureThere_;
    CodecParametersPtr parameters_;
    GopCache gop_;    // changed by the reader only, who reads it without the mutex
    FramePtr latest_; // null while nothing is decoded
};

// Recorded files, read packet by packet.
#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <string>

#include "ipcctl/Av.h"
#include "ipcctl/Deadline.h"

/// A packet of a recording.
struct RecordedPacket
{
    enum class Kind
    {
        Video,
        Sound
    };

    PacketPtr packet;
    Kind kind;
    std::chrono::microseconds time; // of its decoding, since the beginning
};

/// Hands out the packets of video and sound in the order of their times, however they lie in the file. Files of any origin
/// are read: none keeps the reader longer than the time limit, and none makes it read another file or the network.
///
/// One thread at a time.
class RecordFile
{
public:
    using Time = std::chrono::microseconds; // since the beginning

    /// @param stopped  set by any thread: gives up what it is at
    explicit RecordFile(const std::atomic<bool>& stopped) : deadline_(stopped) {}

    /// False when it is none that has video.
    bool open(const std::string& path);

    /// The next packet; without one at the end, or where the file can not be read any more.
    RecordedPacket read();
    /// Goes on at the last key frame before this time, as far as the file has one.
    void seek(Time time);

    Time duration() const;
    AVRational frameRate() const;
    const AVCodecParameters& video() const { return *video_->codecpar; }
    /// Null when there is none.
    const AVCodecParameters* sound() const { return sound_ != nullptr ? sound_->codecpar : nullptr; }
    /// A time as pictures tell it, in the video's units.
    Time videoTime(std::int64_t stamp) const { return timeOf(stamp, *video_); }

private:
    using Queue = std::deque<RecordedPacket>;

    bool openInput(const std::string& path);
    bool probe();
    void chooseStreams();
    bool fill();
    bool inOrder() const;
    bool seekInput(Time time, Time limit);
    static Time timeOf(std::int64_t stamp, const AVStream& stream);

    Deadline deadline_;
    InputPtr input_;
    AVStream* video_ = nullptr;
    AVStream* sound_ = nullptr;
    Queue videoQueue_;
    Queue soundQueue_;
};

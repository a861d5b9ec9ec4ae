// The sound of a recording.
#pragma once

#include <cstdint>

#include "ipcctl/Av.h"

/// Finds the place for each packet of sound, so that it stays with the picture: where sound is missing there is silence,
/// and what would come too late is left out. Counted in units: AAC packets, or samples of all channels else.
class SoundTrack
{
public:
    /// Whether an AVI file can carry it: AAC, G.711 and plain 16-bit samples.
    static bool carries(const AVCodecParameters& sound);

    SoundTrack(const AVCodecParameters& sound, int stream);

    int stream() const { return stream_; }
    /// Units written and left empty so far.
    std::int64_t length() const { return next_; }

    /// How many units must be left empty before a packet of this time, in milliseconds from the beginning; below 0: the
    /// packet is to be left out.
    std::int64_t missingBefore(double time) const;
    std::int64_t unitsOf(const AVPacket& packet) const;
    void advance(std::int64_t units) { next_ += units; }

    /// Whether empty units must be written: the muxer leaves AAC packets empty by itself.
    bool needsSilence() const { return unitBytes_ > 0; }
    /// A packet of so many units of silence at most; null without memory.
    PacketPtr silence(std::int64_t units) const;

private:
    int stream_;
    double unitsPerMillisecond_;
    int unitBytes_; // 0 for AAC
    std::uint8_t silent_;
    std::int64_t next_ = 0;
};

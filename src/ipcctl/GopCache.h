// The packets since the latest key frame.
#pragma once

#include <cstddef>
#include <vector>

#include "ipcctl/Av.h"

/// Lets decoding begin in between. Where key frames are too far apart for that, nothing is kept from some time on.
class GopCache
{
public:
    using Packets = std::vector<PacketPtr>;

    /// Whether the packet can be added; else decoding must have begun by then to go on.
    bool hasRoomFor(const AVPacket& packet) const;
    void add(const AVPacket& packet);
    void clear();

    /// In their order; empty before the first key frame, and where there was no room.
    const Packets& packets() const { return packets_; }

private:
    static constexpr std::size_t mostPackets = 300;
    static constexpr std::size_t mostBytes = 16u << 20;

    Packets packets_;
    std::size_t bytes_ = 0;
    bool full_ = false; // until the next key frame
};

// The packets since the latest key frame.
#pragma once

#include <cstddef>
#include <vector>

#include "ipcctl/Av.h"

/// Lets decoding begin in between. Of a stream whose key frames are too far apart, only the key frame is kept.
class GopCache
{
public:
    using Packets = std::vector<PacketPtr>;

    void add(const AVPacket& packet);
    void clear();

    /// In their order; empty before the first key frame.
    const Packets& packets() const { return packets_; }
    /// Whether the latest packet can be decoded by means of those before it.
    bool isWhole() const { return whole_; }

private:
    static constexpr std::size_t mostPackets = 300;
    static constexpr std::size_t mostBytes = 16u << 20;

    Packets packets_;
    std::size_t bytes_ = 0;
    bool whole_ = false;
};

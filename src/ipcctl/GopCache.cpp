#include "ipcctl/GopCache.h"

bool GopCache::hasRoomFor(const AVPacket& packet) const
{
    if ((packet.flags & AV_PKT_FLAG_KEY) != 0)
        return true;
    return !full_ && packets_.size() < mostPackets &&
           bytes_ + static_cast<std::size_t>(packet.size) <= mostBytes;
}

void GopCache::add(const AVPacket& packet)
{
    if ((packet.flags & AV_PKT_FLAG_KEY) != 0)
        clear();
    else if (packets_.empty())
        return;
    PacketPtr kept(hasRoomFor(packet) ? av_packet_clone(&packet) : nullptr);
    if (kept == nullptr) {
        clear();
        full_ = true;
        return;
    }
    bytes_ += static_cast<std::size_t>(packet.size);
    packets_.push_back(std::move(kept));
}

void GopCache::clear()
{
    packets_.clear();
    bytes_ = 0;
    full_ = false;
}

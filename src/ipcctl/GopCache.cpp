#include "ipcctl/GopCache.h"

void GopCache::add(const AVPacket& packet)
{
    if ((packet.flags & AV_PKT_FLAG_KEY) != 0) {
        clear();
        whole_ = true;
    }
    if (!whole_)
        return;
    bytes_ += static_cast<std::size_t>(packet.size);
    PacketPtr kept(packets_.size() < mostPackets && bytes_ <= mostBytes ? av_packet_clone(&packet) : nullptr);
    if (kept != nullptr) {
        packets_.push_back(std::move(kept));
        return;
    }
    whole_ = false;
    if (packets_.size() > 1)
        packets_.erase(packets_.begin() + 1, packets_.end());
}

void GopCache::clear()
{
    packets_.clear();
    bytes_ = 0;
    whole_ = false;
}

#include "ipcctl/UnitAssembler.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr int startSize = 5;       // a start code and the unit's first byte, which fragments do not repeat
constexpr int leastFragment = 500; // no network has packets so small that this would be parted
constexpr int largestUnit = 8 << 20;
constexpr int doubtful = 20; // so many units in fragments as they should be outweigh one that was not
constexpr int mostTrust = 5 * doubtful;

/// Others are too small to come in fragments.
bool isSlice(const AVPacket& unit)
{
    const int type = unit.data[startSize - 1] & 0x1F;
    return type >= 1 && type <= 5;
}

} // namespace

bool UnitAssembler::begins(const AVPacket& packet)
{
    static constexpr std::uint8_t startCode[] = {0, 0, 0, 1};
    return packet.size >= startSize && std::memcmp(packet.data, startCode, sizeof startCode) == 0;
}

void UnitAssembler::end(const Taker& taker)
{
    if (unit_ == nullptr)
        return;
    if (pieces_ == 1 && beginning_ != fragment_)
        whole_ = std::max(whole_, beginning_);
    complete_ = true;
    const PacketPtr unit = std::move(unit_);
    taker(*unit);
}

void UnitAssembler::take(const AVPacket& packet, const Taker& taker)
{
    if (begins(packet))
        begin(packet);
    else if (unit_ != nullptr)
        goOn(packet);
    else if (lastTime_ != AV_NOPTS_VALUE && packet.pts == lastTime_)
        doubt();
    if (unit_ == nullptr || !complete_)
        return;
    lastTime_ = isSlice(*unit_) ? unit_->pts : AV_NOPTS_VALUE;
    trust_ = std::min(trust_ + (pieces_ > 1 ? 1 : 0), mostTrust);
    const PacketPtr unit = std::move(unit_);
    taker(*unit);
}

void UnitAssembler::begin(const AVPacket& packet)
{
    unit_.reset(av_packet_clone(&packet));
    beginning_ = packet.size - startSize;
    pieces_ = 1;
    complete_ = !isFragment(beginning_);
}

void UnitAssembler::goOn(const AVPacket& packet)
{
    const int before = unit_->size;
    if (before > largestUnit || av_grow_packet(unit_.get(), packet.size) < 0) {
        unit_.reset();
        wrong_ = true;
        return;
    }
    std::memcpy(unit_->data + before, packet.data, static_cast<std::size_t>(packet.size));
    ++pieces_;
    fragment_ = beginning_;
    complete_ = packet.size < beginning_;
}

/// There is more of a unit that was taken for complete, or the beginning of the next one was lost; that is rare.
void UnitAssembler::doubt()
{
    lastTime_ = AV_NOPTS_VALUE;
    trust_ -= doubtful;
    wrong_ |= trust_ < 0;
}

/// Whether a unit that begins so may go on.
bool UnitAssembler::isFragment(int size) const
{
    return size == fragment_ || size >= std::max({fragment_, whole_ + 1, leastFragment});
}

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
    if (isComplete())
        return;
    if (pieces_ == 1 && beginning_ != fragment_)
        whole_ = std::max(whole_, beginning_);
    hand(taker);
}

void UnitAssembler::take(const AVPacket& packet, bool wanted, const Taker& taker)
{
    if (begins(packet))
        begin(packet, wanted);
    else if (!isComplete())
        goOn(packet);
    else if (lastTime_ != AV_NOPTS_VALUE && packet.pts == lastTime_)
        doubt();
    if (isComplete() || !ends_)
        return;
    lastTime_ = time_;
    trust_ = std::min(trust_ + (pieces_ > 1 ? 1 : 0), mostTrust);
    hand(taker);
}

void UnitAssembler::begin(const AVPacket& packet, bool wanted)
{
    unit_.reset(wanted ? av_packet_clone(&packet) : nullptr);
    pieces_ = 1;
    beginning_ = packet.size - startSize;
    time_ = isSlice(packet) ? packet.pts : AV_NOPTS_VALUE;
    ends_ = !isFragment(beginning_);
}

void UnitAssembler::goOn(const AVPacket& packet)
{
    if (!append(packet)) {
        unit_.reset();
        pieces_ = 0;
        wrong_ = true;
        return;
    }
    ++pieces_;
    fragment_ = beginning_;
    ends_ = packet.size < beginning_;
}

/// False when it would be too large, or there is no memory.
bool UnitAssembler::append(const AVPacket& packet)
{
    if (unit_ == nullptr)
        return true;
    const int before = unit_->size;
    if (before > largestUnit || av_grow_packet(unit_.get(), packet.size) < 0)
        return false;
    std::memcpy(unit_->data + before, packet.data, static_cast<std::size_t>(packet.size));
    return true;
}

void UnitAssembler::hand(const Taker& taker)
{
    pieces_ = 0;
    if (const PacketPtr unit = std::move(unit_))
        taker(*unit);
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

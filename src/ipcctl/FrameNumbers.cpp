#include "ipcctl/FrameNumbers.h"

#include <utility>

namespace
{

// Types of units.
constexpr int slice = 1;
constexpr int independentSlice = 5;
constexpr int sequenceSet = 7;
constexpr int pictureSet = 8;

int typeOf(Bytes unit)
{
    return unit[0] & 0x1F;
}

bool isReference(Bytes unit)
{
    return (unit[0] & 0x60) != 0;
}

} // namespace

void FrameNumbers::begin(const AVCodecParameters& described)
{
    *this = {};
    known_ = described.codec_id == AV_CODEC_ID_H264;
    Bytes sets = bytesOf(described.extradata, described.extradata_size);
    for (Bytes unit = nextUnit(sets); known_ && !unit.empty(); unit = nextUnit(sets))
        if (typeOf(unit) == sequenceSet)
            learn(unit);
}

bool FrameNumbers::areMissingBefore(const AVPacket& packet)
{
    independent_ = false;
    if (!known_)
        return false;
    bool gap = false;
    Bytes rest = bytesOf(packet.data, packet.size);
    for (Bytes unit = nextUnit(rest); !unit.empty(); unit = nextUnit(rest))
        switch (typeOf(unit)) {
        case sequenceSet:
            learn(unit);
            [[fallthrough]];
        case pictureSet:
            keep(cutUnit(unit, rest));
            break;
        case slice:
        case independentSlice:
            gap |= takeSlice(unit);
            break;
        default:
            break;
        }
    return gap;
}

/// Sets come together, before the frame that needs them.
void FrameNumbers::keep(Bytes set)
{
    constexpr std::size_t most = 64 << 10;
    if (std::exchange(setsEnded_, false) || sets_.size() + set.size() > most)
        sets_.clear();
    if (set.size() > most)
        return;
    sets_.insert(sets_.end(), {0, 0, 0, 1});
    sets_.insert(sets_.end(), set.begin(), set.end());
}

void FrameNumbers::learn(Bytes unit)
{
    const auto sequence = readSequenceHeader(unit);
    if (!sequence)
        return;
    mixed_ |= sequence_ && sequence_->id != sequence->id;
    sequence_ = sequence;
}

bool FrameNumbers::takeSlice(Bytes unit)
{
    setsEnded_ = true;
    const auto header = sequence_ ? readSliceHeader(unit, *sequence_) : std::nullopt;
    if (!header)
        return false;
    const bool independent = typeOf(unit) == independentSlice;
    independent_ |= independent && header->isFirst;
    field_ = header->isField;
    slices_ |= !header->isFirst;
    const unsigned next = (last_.value_or(0) + 1) % (1u << sequence_->frameNumberBits);
    const bool follows = !last_ || header->frameNumber == *last_ || header->frameNumber == next;
    if (!last_ || isReference(unit))
        last_ = header->frameNumber;
    return !follows && !independent && !mixed_ && !sequence_->numbersMayBeLeftOut;
}

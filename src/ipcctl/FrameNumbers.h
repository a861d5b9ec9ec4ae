// Frames that are missing as a whole, by the numbers that H.264 gives them.
#pragma once

#include <optional>
#include <vector>

#include "ipcctl/Av.h"
#include "ipcctl/H264Headers.h"

/// A frame that others refer to is one ahead of the one before. To other codecs this is blind, and to streams that leave
/// numbers out on purpose or mix several kinds of sequences. On the way it keeps what a new decoder has to know.
class FrameNumbers
{
public:
    /// A stream begins that is described like this.
    void begin(const AVCodecParameters& described);
    /// Whether frames that this one may refer to are missing before it. Takes frames or pieces of them, in their order,
    /// of which each begins with a unit.
    bool areMissingBefore(const AVPacket& packet);
    /// The next frame does not follow the last.
    void breakOff() { last_.reset(); }

    /// Of the latest packet: whether it begins a frame that refers to none before it, and whether it is of half a picture.
    bool isIndependent() const { return independent_; }
    bool isField() const { return field_; }
    /// The parameter sets that came last within the stream, with their start codes; empty when none did.
    const std::vector<std::uint8_t>& parameterSets() const { return sets_; }
    /// Whether there were frames of several slices.
    bool haveSlices() const { return slices_; }

private:
    void learn(Bytes unit);
    void keep(Bytes set);
    bool takeSlice(Bytes unit);

    bool known_ = false; // the codec
    bool mixed_ = false; // there are several sequences
    std::optional<SequenceHeader> sequence_;
    std::optional<unsigned> last_; // number of the latest frame that others refer to
    bool independent_ = false;
    bool field_ = false;
    bool slices_ = false;
    std::vector<std::uint8_t> sets_;
    bool setsEnded_ = false;
};

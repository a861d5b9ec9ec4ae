// From what RTP carries to the units of H.264, as early as can be.
#pragma once

#include <functional>

#include "ipcctl/Av.h"

/// A large unit comes in fragments, of which none says that it is the last: what gives it away is its size, as the others
/// are as long as a packet may be. One that happens to be as long is known to be the last when another unit begins.
class UnitAssembler
{
public:
    using Taker = std::function<void(const AVPacket& unit)>;

    static bool begins(const AVPacket& packet);

    /// To be called before a packet that begins a unit is taken: what came before has ended.
    void end(const Taker& taker);
    /// Hands on the unit that the packet completes, if so.
    void take(const AVPacket& packet, const Taker& taker);

    /// Whether no unit is incomplete.
    bool isComplete() const { return unit_ == nullptr; }
    /// Whether something was handed on that was not complete, or was too large to be: this camera fragments otherwise.
    bool wasWrong() const { return wrong_; }

private:
    void begin(const AVPacket& packet);
    void goOn(const AVPacket& packet);
    void doubt();
    bool isFragment(int size) const;

    PacketPtr unit_;    // null: none has begun that is not complete
    int beginning_ = 0; // size of its first fragment, or of the whole
    int pieces_ = 0;
    bool complete_ = false;
    int trust_ = 0; // in what the sizes tell
    bool wrong_ = false;
    std::int64_t lastTime_ = AV_NOPTS_VALUE; // of the unit handed on last, if a slice

    int fragment_ = 0; // size of a first fragment; 0: there was none yet
    int whole_ = 0;    // of the largest unit that came unfragmented
};

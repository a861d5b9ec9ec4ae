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
    /// @param wanted  whether a unit that the packet begins is; of others only the sizes count
    void take(const AVPacket& packet, bool wanted, const Taker& taker);

    /// Whether no unit is incomplete.
    bool isComplete() const { return pieces_ == 0; }
    /// Whether something was taken for complete that was not, or was too large to be: this camera fragments otherwise.
    bool wasWrong() const { return wrong_; }

private:
    void begin(const AVPacket& packet, bool wanted);
    void goOn(const AVPacket& packet);
    bool append(const AVPacket& packet);
    void hand(const Taker& taker);
    void doubt();
    bool isFragment(int size) const;

    // Of the unit that has begun.
    int pieces_ = 0;                     // 0: there is none
    int beginning_ = 0;                  // size of its first fragment, or of the whole
    std::int64_t time_ = AV_NOPTS_VALUE; // if it is a slice
    bool ends_ = false;                  // with what came last
    PacketPtr unit_;                     // null: not wanted

    int trust_ = 0; // in what the sizes tell
    bool wrong_ = false;
    std::int64_t lastTime_ = AV_NOPTS_VALUE; // of the unit that ended last

    int fragment_ = 0; // size of a first fragment; 0: there was none yet
    int whole_ = 0;    // of the largest unit that came unfragmented
};

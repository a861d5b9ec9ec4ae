// A loop of encoded frames that any number of clients are given.
#pragma once

#include "Owned.h"
#include "StreamPlan.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace kxsim
{

/// Encodes each of its frames once, when it is first asked for. May be used from any thread.
class EncodedLoop
{
public:
    /// The one loop of this process for this plan, for as long as somebody keeps it.
    static std::shared_ptr<EncodedLoop> of(const VideoPlan& plan);

    explicit EncodedLoop(const VideoPlan& plan);
    ~EncodedLoop();
    EncodedLoop(const EncodedLoop&) = delete;
    EncodedLoop& operator=(const EncodedLoop&) = delete;

    const VideoPlan& plan() const { return plan_; }
    /// The format of the frames. Nothing when the encoder failed.
    Owned<GstCaps> caps();
    /// The frame of this index since the stream's beginning, with its time; nothing when the encoder failed.
    Owned<GstBuffer> frame(std::uint64_t index);

private:
    class Encoder;

    GstSample* sample(std::size_t number); // mutex_ is held

    const VideoPlan plan_;
    std::mutex mutex_;
    std::unique_ptr<Encoder> encoder_; ///< until all frames are there
    std::vector<Owned<GstSample>> samples_;
};

} // namespace kxsim

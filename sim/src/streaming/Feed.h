// What one client gets: frames into its pipeline, packets out of it, and the faults on the way.
#pragma once

#include "CurrentFault.h"
#include "EncodedLoop.h"

#include <gst/app/app.h>
#include <gst/rtsp-server/rtsp-server.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

namespace kxsim
{

/// Lives as long as the pipeline calls it. Used by the pipeline's threads.
class Feed
{
public:
    /// Feeds the source named "video" of a pipeline that is not running yet.
    static void attach(GstRTSPMedia* media, std::shared_ptr<EncodedLoop> loop,
                       std::shared_ptr<const CurrentFault> fault);

    Feed(std::shared_ptr<EncodedLoop> loop, std::shared_ptr<const CurrentFault> fault);

    void supply(GstAppSrc* source);
    void stateChanged(GstState state);
    /// What is to become of a packet, or a list of packets, that is about to be sent.
    GstPadProbeReturn inspect(GstPad* pad, GstPadProbeInfo* info);

private:
    bool withheld(const GstBuffer* frame) const;
    bool hasPlayedFor(std::chrono::nanoseconds time) const;
    bool isLost(unsigned every) { return ++packets_ % std::max(every, 1U) == 0; }
    bool isGone(GstPadProbeInfo* info, unsigned every);
    void waitUntilDue(GstPad* pad, GstPadProbeInfo* info) const;

    const std::shared_ptr<EncodedLoop> loop_;
    const std::shared_ptr<const CurrentFault> fault_;
    std::atomic<std::uint64_t> index_ = 0;                         ///< of the next frame
    std::atomic<std::chrono::steady_clock::rep> playingSince_ = 0; ///< 0: not yet
    std::atomic<unsigned> packets_ = 0;
};

} // namespace kxsim

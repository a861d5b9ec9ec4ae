// How far a stream's reader is behind its camera.
#pragma once

#include <algorithm>
#include <chrono>

#include "ipcctl/StreamTiming.h"

/// Frames that wait to be read can not be seen. What can be seen is that the reader takes longer for a frame than its
/// camera, and that it has to wait, which means that it has read all there is. Times on the way and clocks that differ do
/// not count.
class Backlog
{
public:
    using Clock = std::chrono::steady_clock;

    /// A stream begins.
    void begin(Clock::time_point now) { *this = Backlog(now); }
    explicit Backlog(Clock::time_point now) : last_(now) {}

    /// So long it took to get a packet.
    void noteWait(Clock::duration time) { longestWait_ = std::max(longestWait_, time); }
    /// @param time  of the frame on the camera's clock, in milliseconds
    void noteFrame(double time, Clock::time_point now)
    {
        constexpr std::chrono::milliseconds aWait{5}; // and not the system's other business
        const bool caughtUp = longestWait_ >= aWait;
        const double passed = std::chrono::duration<double, std::milli>(now - last_).count();
        behind_ = caughtUp ? 0 : std::max(0.0, behind_ + passed - (time - lastTime_));
        late_ = !caughtUp && (late_ || behind_ > static_cast<double>(g_streamTiming.late.count()));
        longestWait_ = {};
        last_ = now;
        lastTime_ = time;
    }

    /// Whether it is so far behind that it should hurry; then, until it has caught up.
    bool isLate() const { return late_; }

private:
    Clock::time_point last_;
    double lastTime_ = 0;
    Clock::duration longestWait_{};
    double behind_ = 0; // milliseconds
    bool late_ = false;
};

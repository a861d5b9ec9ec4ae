#include "ipcctl/TimeLine.h"

#include <algorithm>
#include <cmath>

double TimeLine::place(double stamp, Clock::time_point now)
{
    const double passed = std::chrono::duration<double, std::milli>(now - lastSeen_).count();
    lastSeen_ = now;
    if (!offsetKnown_)
        anchor(stamp, last_ + passed);
    double time = stamp + offset_;
    const double step = time - last_;
    // Not a number fails all comparisons.
    if (step < 0 && step > -tolerance) {
        time = last_;
    } else if (!(step >= 0 && step <= passed + tolerance)) {
        time = last_ + passed;
        anchor(stamp, time);
        time = offsetKnown_ ? stamp + offset_ : time;
    }
    last_ = std::max(time, last_);
    return last_;
}

/// Makes the time stamp stand for this time, or for the one that it has on the other line if that is near.
void TimeLine::anchor(double stamp, double time)
{
    offsetKnown_ = !std::isnan(stamp);
    offset_ = offsetKnown_ ? time - stamp : 0;
    if (other_ != nullptr && other_->offsetKnown_ && std::abs(stamp + other_->offset_ - time) <= tolerance)
        offset_ = other_->offset_;
}

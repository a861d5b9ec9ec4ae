// When a picture of a recording is to be shown.
#pragma once

#include <algorithm>
#include <chrono>

/// Runs through a recording at some speed, or stands still.
class PlayClock
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Position = std::chrono::microseconds; // in the recording

    /// Goes on from this position.
    void jump(Position position, Time now)
    {
        position_ = position;
        since_ = now;
    }
    void setSpeed(double speed, Time now)
    {
        jump(at(now), now);
        speed_ = speed;
    }
    void setRunning(bool running, Time now)
    {
        jump(at(now), now);
        running_ = running;
    }

    bool running() const { return running_; }
    Position at(Time now) const { return running_ ? position_ + scaled(now - since_, speed_) : position_; }
    /// When a running clock will be there.
    Time due(Position position) const { return since_ + scaled(position - position_, 1 / speed_); }

private:
    template <typename Duration>
    static Position scaled(Duration duration, double factor)
    {
        return std::chrono::duration_cast<Position>(duration * factor);
    }

    Position position_{0}; // where it was
    Time since_;           // at this time
    double speed_ = 1;
    bool running_ = true;
};

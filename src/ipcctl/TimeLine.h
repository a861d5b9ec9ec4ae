// The time of a stream that may be opened anew, and whose camera may set its clock meanwhile.
#pragma once

#include <chrono>
#include <cstdint>

/// Turns the time stamps of video, or those of sound, into milliseconds since the stream was opened first. They never
/// fall; where time stamps jump or are missing, they go on by the time that has passed on our side.
class TimeLine
{
public:
    using Clock = std::chrono::steady_clock;

    /// @param begin  when the stream was opened
    /// @param other  that of the same stream's video or sound, so that both stay in step
    explicit TimeLine(Clock::time_point begin, const TimeLine* other = nullptr)
        : other_(other), lastSeen_(begin)
    {
    }

    /// @param stamp  in milliseconds; not a number when there is none
    /// @param now    when the packet came
    double place(double stamp, Clock::time_point now);

    /// The next time stamp has nothing to do with the last one.
    void breakOff() { offsetKnown_ = false; }

private:
    void anchor(double stamp, double time);

    static constexpr double tolerance = 1000; // for jitter on the way, in milliseconds

    const TimeLine* const other_;
    bool offsetKnown_ = false;
    double offset_ = 0; // from time stamps to times
    double last_ = 0;
    Clock::time_point lastSeen_;
};

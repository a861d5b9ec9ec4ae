// Frames of a stream on the even grid of a recording.
#pragma once

#include <cstdint>
#include <vector>

#include "ipcctl/Av.h"

/// An AVI file has no time stamps: the number of a frame and the file's rate are its time. This finds the number for each
/// frame from its time stamp, and in the end the rate that makes numbers and time stamps agree.
///
/// How: time stamps jitter, and a camera's clock is never quite that of its rate, so the grid follows the frames as long as
/// they come about when they are expected. When they come late by more than that, or stay late, some were lost or
/// the stream was away: their numbers stay empty. What comes early takes the next number.
class FrameGrid
{
public:
    using Microseconds = std::int64_t;

    /// The rate until it is measured.
    explicit FrameGrid(AVRational nominal);

    /// The number of a frame, higher than that of the frame before; leaps are not higher than `longestLeap`, what
    /// is left of them is made up for later.
    std::int64_t place(Microseconds time);

    /// The number of the next frame when none is missing: how many there are, empty ones too.
    std::int64_t frames() const { return next_; }
    /// So many frames a second.
    AVRational rate() const;

    /// The AVI muxer takes a little more than twice as much at once.
    static constexpr std::int64_t longestLeap = 25'000;

private:
    void learn(double time);
    std::int64_t missing(double late);
    void follow(double late);

    AVRational nominal_;
    std::int64_t next_ = 0;
    Microseconds first_ = 0;
    Microseconds latest_ = 0;
    std::vector<double> times_; // of the first frames, until there are enough to know the period
    double period_ = 0;         // 0 before
    double expected_ = 0;       // when the next frame should come
    int lateFrames_ = 0;        // how many in a row
};

// When FFmpeg has to give up waiting.
#pragma once

#include <atomic>
#include <chrono>

#include <time.h>

#include "ipcctl/Av.h"

/// A steady clock that ticks every few milliseconds only. FFmpeg asks some fifty times a frame whether to give up; reading
/// a finer clock as often is a twentieth of what a recording costs.
struct CoarseClock
{
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<CoarseClock>;
    static constexpr bool is_steady = true;

    static time_point now() noexcept
    {
        timespec time{};
        ::clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
        return time_point(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
    }
};

/// Bounds every blocking step of an FFmpeg input: it asks before it waits, and every tenth of a second meanwhile.
/// One thread waits, any thread may stop it.
class Deadline
{
public:
    using Clock = CoarseClock;

    explicit Deadline(const std::atomic<bool>& stopped) : stopped_(stopped) {}

    /// For what comes next, from now on.
    void allow(std::chrono::milliseconds time) { end_ = Clock::now() + time; }
    /// The same for the last words, which are said although it was stopped.
    void allowFarewell(std::chrono::milliseconds time)
    {
        farewell_ = true;
        allow(time);
    }

    AVIOInterruptCB callback() { return {&isOver, this}; }

private:
    static int isOver(void* self)
    {
        const auto& deadline = *static_cast<const Deadline*>(self);
        return (deadline.stopped_ && !deadline.farewell_) || Clock::now() >= deadline.end_;
    }

    const std::atomic<bool>& stopped_;
    bool farewell_ = false;
    Clock::time_point end_{};
};

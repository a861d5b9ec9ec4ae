// How many frames a second a stream has.
#pragma once

#include <array>
#include <cstddef>

#include "ipcctl/Av.h"

/// Measured over the latest frames.
class RateMeter
{
public:
    /// @param time of a frame, in milliseconds
    void add(double time);
    /// Frames a second; 0/1 while there were too few to tell. What is near a usual rate is that rate.
    AVRational get() const;

private:
    static constexpr std::size_t most = 32;
    static constexpr std::size_t fewest = 9;

    std::array<double, most> times_{};
    std::size_t count_ = 0; // of all frames
};

// The figure that repetitions are boiled down to.
#pragma once

#include <algorithm>
#include <vector>

/// The least time of all repetitions. Whatever else the machine does only ever adds to a time, so the least
/// one is the nearest to what the code itself takes.
inline double best(const std::vector<double>& repetitions)
{
    return *std::min_element(repetitions.begin(), repetitions.end());
}

// How many descriptors this process holds.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <thread>

inline std::size_t openDescriptors()
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

/// Waits for the camera's own side of closed connections, which this process holds too.
inline bool descriptorsFallTo(std::size_t wanted)
{
    for (int i = 0; i < 400 && openDescriptors() > wanted; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return openDescriptors() <= wanted;
}

// Times and sizes as people read them.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace kxcam
{

/// "12.5"
std::string decimal(double number);

/// "820 bytes", "3.4 MB"
std::string sizeText(std::uint64_t bytes);

/// "0:07", "12:30"
std::string clockText(std::chrono::milliseconds time);

/// "1 frame", "7 frames"
std::string counted(std::int64_t count, const std::string& thing);

/// The seconds that have passed since.
double secondsSince(std::chrono::steady_clock::time_point begin);

/// A time to wait: these seconds, but not more than the others and not less than none.
std::chrono::milliseconds secondsAtMost(double seconds, double most);

} // namespace kxcam

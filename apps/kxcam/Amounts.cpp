#include "Amounts.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace kxcam
{

std::string decimal(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", number);
    return text;
}

std::string sizeText(std::uint64_t bytes)
{
    constexpr const char* units[] = {" kB", " MB", " GB", " TB"};
    if (bytes < 1000)
        return counted(static_cast<std::int64_t>(bytes), "byte");
    double size = static_cast<double>(bytes) / 1000;
    const char* const* unit = units;
    for (; size >= 999.95 && unit != std::end(units) - 1; ++unit)
        size /= 1000;
    return decimal(size) + *unit;
}

std::string clockText(std::chrono::milliseconds time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

std::string counted(std::int64_t count, const std::string& thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

double secondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::chrono::milliseconds secondsAtMost(double seconds, double most)
{
    return std::chrono::milliseconds(std::lround(std::clamp(seconds, 0.0, most) * 1000));
}

} // namespace kxcam

// How far long work is, for the person who watches.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Console.h"

namespace kxcam
{

/// "[##########------------------------------]"
std::string barOf(std::uint64_t done, std::uint64_t total);

/// A line on the terminal that is written again and again in its place. It ends with this object, so that something else
/// may follow.
class ProgressLine
{
public:
    explicit ProgressLine(Console& console) : console_(console) {}
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(const std::string& text);

private:
    Console& console_;
    std::size_t shown_ = 0; // characters on the line
};

} // namespace kxcam

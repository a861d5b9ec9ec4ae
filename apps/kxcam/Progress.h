// How far long work is, for the person who watches.
#pragma once

#include <cstdint>
#include <string>

#include "Console.h"

namespace kxcam
{

/// "[##########------------------------------]"
std::string barOf(std::uint64_t done, std::uint64_t total);

/// A line that changes: on a terminal it is written again and again in its place. It ends with this object, so that
/// something else may follow. Programs that asked for JSON get nothing of it.
class ProgressLine
{
public:
    enum Elsewhere
    {
        LineEach, // a text that is not for a terminal is a line of its own
        Nothing
    };

    ProgressLine(bool json, Console& console, Elsewhere elsewhere = LineEach);
    ~ProgressLine() { finish(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool redraws() const { return redraws_; }

    /// A text that stands there already is not shown again.
    void show(const std::string& text);

    /// What is printed next begins a line of its own.
    void finish();

private:
    Console& console_;
    bool visible_;
    bool redraws_;
    std::string shown_;
};

} // namespace kxcam

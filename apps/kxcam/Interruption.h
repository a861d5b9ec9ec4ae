// Signals that end or suspend the program, held off while something must be undone first.
#pragma once

#include <chrono>

#include "Terminal.h"

namespace kxcam
{

/// As long as this lives, Ctrl-C, Ctrl-Z and the like only wake a pause. There is one at a time. Those that the program was
/// started to ignore, as by nohup, stay ignored.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Waits, but no longer than until a signal comes, or not at all when one has come.
    void pause(std::chrono::milliseconds time) const;

    bool hasCome() const;

    /// Lets a signal that has come do what it does otherwise: mostly, end the program.
    void letThrough();

private:
    void restore();

    Descriptor wakeUp_;
    bool holding_ = true;
};

} // namespace kxcam

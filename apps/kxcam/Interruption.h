// Ctrl-C in the middle of work that must be ended in order.
#pragma once

#include <string>

#include "Failure.h"

namespace kxcam
{

/// As long as one lives, the first signal that asks kxcam to end (SIGINT, SIGTERM, SIGHUP) is only noted; a second one ends
/// it at once.
class InterruptGuard
{
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

    /// Whether there was one.
    static bool interrupted();
};

/// Thrown when the work has been ended. Once it is told, kxcam ends by the signal, as whoever started it expects.
class Interruption : public Failure
{
public:
    explicit Interruption(const std::string& message) : Failure(ExitCode::ThisComputer, message) {}

    static void endBySignal();
};

} // namespace kxcam

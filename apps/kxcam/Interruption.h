// Signals that end or suspend the program, held off while something must be undone first.
#pragma once

#include <chrono>
#include <string>

#include "Failure.h"
#include "Terminal.h"

namespace kxcam
{

/// As long as this lives, Ctrl-C and the like only wake a pause. There is one at a time. Those that the program was started
/// to ignore, as by nohup, stay ignored.
class SignalHold
{
public:
    enum Suspension
    {
        Passes,
        Held // Ctrl-Z, too, waits for its turn
    };

    explicit SignalHold(Suspension suspension = Passes);
    ~SignalHold();
    SignalHold(const SignalHold&) = delete;
    SignalHold& operator=(const SignalHold&) = delete;

    /// Waits, but no longer than until a signal comes, or not at all when one has come. Whether one has.
    bool pause(std::chrono::milliseconds time) const;

    bool hasCome() const;

    /// Lets a signal that has come do what it does otherwise: mostly, end the program.
    void letThrough();

private:
    void restore();

    Descriptor wakeUp_;
    std::size_t count_;
};

/// Thrown when work has been ended by a signal. Once it is told, kxcam ends by that, as whoever started it expects.
class Interruption : public Failure
{
public:
    explicit Interruption(const std::string& message) : Failure(ExitCode::ThisComputer, message) {}

    static void endBySignal();
};

} // namespace kxcam

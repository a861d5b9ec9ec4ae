// Other programs, and what they take.
#pragma once

#include <string>
#include <vector>

using Command = std::vector<std::string>;

/// What processes took in all.
struct Usage
{
    double cpu = 0;    // seconds, of one core
    double time = 0;   // seconds until the last has ended
    double memory = 0; // bytes: the sum of what each had resident at most
};

/// Runs the commands side by side. Throws std::runtime_error when one fails; what it has to say goes where this
/// program's standard error goes.
Usage run(const std::vector<Command>& commands);

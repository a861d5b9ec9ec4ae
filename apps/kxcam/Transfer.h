// Running a file transfer so that it can be watched and stopped.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Console.h"

namespace kxcam
{

struct Transferred
{
    bool succeeded = false;
    bool hasCode = false;    // a failure has left a code of the SDK
    std::uint64_t bytes = 0; // of the file, those that were moved; of an export, of the answer
    std::uint64_t total = 0; // bytes of the file in all; 0: not known
};

/// Runs a call of the SDK that moves a file. On a terminal, unless `json`, it shows how far that is. Ctrl-C stops it: an
/// Interruption that says `whenStopped`.
Transferred runTransfer(const std::function<int()>& call, bool json, const std::string& whenStopped,
                        Console& console);

} // namespace kxcam

// The fault that is in force, for all threads.
#pragma once

#include "KxSim/Streaming.h"

#include <mutex>

namespace kxsim
{

class CurrentFault
{
public:
    StreamFault now() const
    {
        const std::lock_guard lock(mutex_);
        return fault_;
    }
    void set(const StreamFault& fault)
    {
        const std::lock_guard lock(mutex_);
        fault_ = fault;
    }

private:
    mutable std::mutex mutex_;
    StreamFault fault_;
};

} // namespace kxsim

// The process-wide last error: one cell for all threads, overwritten by the latest failing step.
#pragma once

#include <atomic>

#include <KxIpcSDK/KxSdk.h>

extern std::atomic<long> g_nLastError;

inline void setLastError(KxError error)
{
    g_nLastError.store(error, std::memory_order_relaxed);
}

/// Sets the last error and returns a failed call's result.
inline int failWith(KxError error)
{
    setLastError(error);
    return -1;
}

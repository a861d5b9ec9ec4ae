// Objects on their way to other threads through GLib and GStreamer.
#pragma once

#include <atomic>

namespace kxsim
{

/// GLib's locks are none that the thread sanitizer knows. What is made before given() is seen by whoever calls taken()
/// first, also in its eyes.
class HandOver
{
public:
    static void given() { count_.fetch_add(1, std::memory_order_release); }
    static void taken() { count_.load(std::memory_order_acquire); }

private:
    static inline std::atomic<unsigned> count_ = 0;
};

} // namespace kxsim

// What a stream counts.
#pragma once

#include <atomic>
#include <cstdint>

/// Counted by the stream's reader, read by any thread.
struct StreamCounters
{
    std::atomic<std::int64_t> framesReceived{0};
    std::atomic<std::int64_t> framesDecoded{0};
    std::atomic<std::int64_t> framesDelivered{0};
    std::atomic<std::int64_t> framesDropped{0};
    std::atomic<std::int64_t> bytesReceived{0};
    std::atomic<std::int64_t> reconnects{0};
    std::atomic<std::int64_t> lastFrameTime{0};
    std::atomic<std::int32_t> width{0};
    std::atomic<std::int32_t> height{0};
    std::atomic<bool> connected{false};
    std::atomic<bool> refused{false};
};

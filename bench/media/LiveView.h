// A live view of a simulated camera, by the SDK's public calls.
#pragma once

#include <cstdint>
#include <functional>

#include <KxIpcSDK/KxMedia.h>

#include "../Endpoint.h"

/// A picture as the SDK hands it out: packed 24-bit colour.
struct Picture
{
    const std::uint8_t* pixels;
    int width;
    int height;
};

/// A session with a camera. Every member throws std::runtime_error when the SDK's call fails.
class LiveView
{
public:
    /// Called on a thread of the SDK; it may stop the view.
    using Taker = std::function<void(const Picture&)>;

    /// @param taker  none: pictures are not wanted
    explicit LiveView(const Endpoint& camera, Taker taker = {});
    ~LiveView();
    LiveView(const LiveView&) = delete;
    LiveView& operator=(const LiveView&) = delete;

    void open();
    void stop();
    void record(const char* directory);
    void stopRecording();
    KxLiveStatus status() const;

private:
    static void take(long userId, int dataType, const std::uint8_t* data, int size, int width, int height,
                     void* self);

    Taker taker_;
    long id_ = -1;
};

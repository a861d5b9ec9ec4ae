// The time limits and pauses of the streaming library, in one place, so that tests need not wait for the real ones.
#pragma once

#include <chrono>

struct StreamTiming
{
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds open{10'000};    // until the camera has agreed to send a stream
    Milliseconds silence{10'000}; // without a packet; then the stream counts as broken off
    Milliseconds firstPause{500}; // before a stream that broke off is opened again, doubled from time to time
    Milliseconds longestPause{30'000}; // up to this
    Milliseconds teardown{200};        // until the camera has been told that a stream ends
    Milliseconds close{900}; // that closing waits for readers and disks, which are left to themselves then
    Milliseconds firstImage{5'000}; // until there is a picture to save
    Milliseconds late{300}; // that pictures may be shown behind their time, or a stream waits to show one
    Milliseconds longestBlank{1'000}; // after which a picture is shown however late it is
    Milliseconds fullDisk{10'000};    // until automatic recording is tried again
    Milliseconds fileStep{5'000}; // that opening a recording, or reading the next packet of it, takes at most
    int playFaster{1};            // how many times as fast recordings play as they should
};

// The values in force. Written by tests before they open streams, by nothing else.
extern StreamTiming g_streamTiming;

/// Until when a closing that begins now may wait.
std::chrono::steady_clock::time_point closingTime();

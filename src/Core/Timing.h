// The time limits and pauses of the SDK, in one place, so that tests need not wait for the real ones.
#pragma once

#include <chrono>

struct Timing
{
    using Milliseconds = std::chrono::milliseconds;
    using Microseconds = std::chrono::microseconds;

    Milliseconds probe{5'000};       // until a camera reacts to a connection attempt at all
    Milliseconds connect{15'000};    // until the request can be sent; again until there is room for it
    Milliseconds firstReply{15'000}; // until the first byte of the reply
    Milliseconds accountConnect{
        5'000}; // as connect and firstReply, for the requests of the account management
    Milliseconds accountReply{5'000};
    Milliseconds transferConnect{
        5'000}; // the same for downloads; an upload waits for its reply as long as a camera
    Milliseconds transferReply{5'000}; // may need to check a firmware, and as long for it to take each piece
    Milliseconds uploadReply{180'000};
    Milliseconds watchPause{250};      // until the watcher of a transfer that waits is asked again
    Milliseconds stalledReply{60'000}; // between two pieces of a reply; what came until then is the reply
    Microseconds retry{200};           // before a failed read or an empty write is tried again
    Milliseconds streamWorker{50};     // between two rounds of the stream-opening worker
    Milliseconds decodersOff{20};      // from switching the decoders off to closing their streams
};

// The values in force. Written by tests before they make calls, by nothing else.
extern Timing g_timing;

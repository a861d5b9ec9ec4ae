// The time limits and pauses of the SDK, in one place, so that tests need not wait for the real ones.
#pragma once

#include <chrono>

struct Timing
{
    using Milliseconds = std::chrono::milliseconds;
    using Microseconds = std::chrono::microseconds;

    Milliseconds probe{5'000};           // until a camera reacts to a connection attempt at all
    Milliseconds connect{15'000};        // until the request can be sent; again until there is room for it
    Milliseconds firstReply{15'000};     // until the first byte of the reply
    Milliseconds accountConnect{5'000};  // as connect, for the requests of the account management
    Milliseconds accountReply{5'000};    // as firstReply, for the same
    Milliseconds transferConnect{5'000}; // as connect, for the transfers of files
    Milliseconds transferReply{5'000};   // as firstReply, for the same but uploads
    Milliseconds uploadReply{180'000};   // until a firmware is checked, and until a piece is taken
    Milliseconds completeReply{
        1'000};                   // for more of a transfer's reply than it told of; cameras may not close
    Milliseconds watchPause{250}; // until the watcher of a transfer that waits is asked again
    Milliseconds stalledReply{60'000};  // between two pieces of a reply; what came until then is the reply
    Microseconds retry{200};            // before a failed read or an empty write is tried again
    Milliseconds streamWorker{50};      // between two rounds of the stream-opening worker
    Milliseconds searchSecond{1'000};   // what the search takes for a second
    Milliseconds searchWasted{120'000}; // what a search spends at most on answers that count for nothing
    Milliseconds decodersOff{20};       // from switching the decoders off to closing their streams

    // What a camera gets to restart its video encoder before the next request.
    Milliseconds newResolution{2'000};       // after another picture size
    Milliseconds newEncoding{5'000};         // after other settings of the main or the sub stream
    Milliseconds newThirdEncoding{3'000};    // the same for the third stream
    Milliseconds oldFirmwareEncoding{1'500}; // the same, any stream, on old firmware
};

// The values in force. Written by tests before they make calls, by nothing else.
extern Timing g_timing;

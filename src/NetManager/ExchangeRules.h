// What tells one request function from another.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <span>
#include <string_view>

#include "Core/LastError.h"
#include "Core/Timing.h"

class TransferWatch;

/// A status text ("4..." or "5...") that, found anywhere in a reply, makes the request fail.
struct Refusal
{
    std::string_view text;
    KxError error;
};

/// How an exchange goes about its socket.
enum class Manner
{
    Blocking, // sends until all is out; urgent data instead of a reply end the exchange
    NonBlocking // lingers on close; writes once, whatever part of the request that takes; the reply of exchange()
                // ends at its first zero byte
};

struct ExchangeRules
{
    std::chrono::milliseconds connectWait;       // until the request can be sent
    std::chrono::milliseconds replyWait;         // until the first byte of the reply
    std::optional<KxError> nothingReceived = {}; // without one, no code is set
    std::span<const Refusal> refusals = {};      // in the order they are looked for
    std::atomic<int>& failedReads; // consecutive ones, counted over all concurrent requests of the function
    Manner manner = Manner::Blocking;
    std::string_view goodReply = {}; // a reply without this text fails with KX_ERROR_BUSY
    std::chrono::milliseconds pieceWait = g_timing.stalledReply; // between two pieces of the reply
    TransferWatch* watch = nullptr; // asked while the exchange waits, in non-blocking manner; may stop it
};

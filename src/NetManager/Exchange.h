// One exchange with a camera over a connection of its own: connect, send, receive, judge.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <span>
#include <string_view>

#include <netinet/in.h>

#include "Core/LastError.h"

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
    NonBlocking // lingers on close; writes once, whatever part of the request that takes; the reply ends at its first
                // zero byte
};

/// What tells one request function from another.
struct ExchangeRules
{
    std::chrono::milliseconds connectWait;  // until the request can be sent
    std::chrono::milliseconds replyWait;    // until the first byte of the reply
    std::optional<KxError> nothingReceived; // without one, no code is set
    std::span<const Refusal> refusals;      // in the order they are looked for
    std::atomic<int>& failedReads; // consecutive ones, counted over all concurrent requests of the function
    Manner manner = Manner::Blocking;
    std::string_view goodReply = {}; // a reply without this text fails with KX_ERROR_BUSY
};

/// Sends the request to the camera at this address and fills `reply` with the first replySize - 1 bytes of what
/// comes back as it comes (status line, headers, body), then zeros; its last byte is never written. The reply stays
/// untouched when it came to no reading. Returns 0; or -1 with the last error set, except when the system has no
/// socket and as the rules say.
int exchange(const sockaddr_in& address, std::string_view request, char* reply, int replySize,
             const ExchangeRules& rules);

// A connection to a camera for one exchange, step by step: open, send, receive.
#pragma once

#include <chrono>
#include <string_view>

#include <netinet/in.h>

#include "NetManager/ExchangeRules.h"
#include "NetManager/Socket.h"

/// Where the bytes of a reply go, as they come.
class ReplySink
{
public:
    /// False when no more are wanted.
    virtual bool take(std::string_view bytes) = 0;
    /// Whether the reply has come to the length that it told. There may be more of it all the same, but not much later.
    virtual bool complete() const { return false; }

protected:
    ~ReplySink() = default;
};

/// Why the bytes of a reply stopped coming.
enum class ReplyEnd
{
    NotBegun, // nothing came in time
    Closed,   // by the camera, or urgent data took the reply's place
    Broken,   // the connection failed, or the camera fell silent
    Enough    // the sink wanted no more
};

/// Every step ends within the time that the rules give it for each piece; a watched transfer may stop it before.
class Connection
{
public:
    explicit Connection(const ExchangeRules& rules);

    /// False: the camera lets wait too long (KX_ERROR_NETWORK), or the system has no socket (no code).
    bool open(const sockaddr_in& address);

    /// Sends a request in the rules' manner; false, with KX_ERROR_NETWORK, when it does not get out.
    bool send(std::string_view request);

    /// Sends all these bytes over a non-blocking connection, however often the camera must be waited for, each time as
    /// long as for a reply. False as above; without a code when the camera has answered before it took them all.
    bool sendAll(std::string_view bytes);

    /// Breaks off: what is still under way to the camera is not waited for on close, and the camera is told.
    void abandon() { setLinger(socket_, 0); }

    /// Waits for the reply and hands it to the sink, to its end or until the sink has enough. Sets no code.
    ReplyEnd receive(ReplySink& sink);

private:
    bool connectWithin(const sockaddr_in& address);
    bool sendWhole(std::string_view request);
    ReplyEnd readPieces(ReplySink& sink);
    bool readFailedForGood(const ReplySink& sink);
    bool isAnswered() const;
    bool isComplete(const ReplySink& reply) const { return rules_.watch != nullptr && reply.complete(); }
    Wait wait(unsigned waitSet, std::chrono::milliseconds limit) const;
    bool blocking() const { return rules_.manner == Manner::Blocking; }

    const ExchangeRules& rules_;
    FileDescriptor socket_;
};

/// Sets KX_ERROR_NETWORK, unless it was the application that stopped the transfer; false.
bool networkFailed(const ExchangeRules& rules);

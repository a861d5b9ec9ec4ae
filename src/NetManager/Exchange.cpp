#include "NetManager/Exchange.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include <sys/socket.h>

#include "Core/Timing.h"
#include "NetManager/Socket.h"

namespace
{

constexpr int toleratedReadErrors = 5; // in a row; the next one ends the reading

bool startConnect(const FileDescriptor& socket, const sockaddr_in& address)
{
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

/// A connect that no camera can stretch beyond the limit, which a blocking one could. A refusal is not told here: it
/// shows when the request is sent.
bool connectWithin(const FileDescriptor& socket, const sockaddr_in& address, std::chrono::milliseconds limit)
{
    setSendLimit(socket, limit);
    if (startConnect(socket, address))
        return true;
    if (errno == EINTR) // the attempt goes on
        return waitFor(socket, Writable | Exception, limit) != Wait::TimedOut;
    return errno != EINPROGRESS;
}

/// Cameras take a request that starts again after a partial write, so each attempt writes it from its first byte. The
/// send buffer nearly always takes a whole request at once. Where it does not, a camera that reads nothing for the
/// limit fails the request.
bool sendWhole(const FileDescriptor& socket, std::string_view request, std::chrono::milliseconds limit)
{
    std::size_t total = 0;
    while (total < request.size()) {
        const ssize_t written = ::send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL);
        if (written > 0)
            total += static_cast<std::size_t>(written);
        else if (written == 0)
            std::this_thread::sleep_for(g_timing.retry);
        else if (errno != EINTR || waitFor(socket, Writable, limit) == Wait::TimedOut)
            return false; // a signal must not begin the limit anew for ever, hence the wait
    }
    return true;
}

/// Connects and sends; false when the camera lets either wait too long or breaks the connection.
bool deliver(const FileDescriptor& socket, const sockaddr_in& address, std::string_view request,
             const ExchangeRules& rules)
{
    if (rules.manner == Manner::Blocking)
        return connectWithin(socket, address, rules.connectWait) &&
               sendWhole(socket, request, rules.connectWait);
    startConnect(socket, address);
    const Wait outcome = waitFor(socket, Readable | Writable | Exception, rules.connectWait);
    return outcome != Wait::TimedOut && outcome != Wait::Failed &&
           ::send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL) >= 0;
}

/// Waits for the reply to begin.
Wait awaitReply(const FileDescriptor& socket, const ExchangeRules& rules)
{
    if (rules.manner == Manner::Blocking)
        return waitFor(socket, Readable | Exception, rules.replyWait);
    const Wait outcome = waitFor(socket, Readable, rules.replyWait);
    return outcome == Wait::Failed ? Wait::TimedOut : outcome;
}

/// Counts a failed read; true when the reading must end.
bool readFailedForGood(const FileDescriptor& socket, const ExchangeRules& rules)
{
    if (errno == EAGAIN && rules.manner == Manner::Blocking) // nothing came within the limit
        return true;
    if (errno == EINTR || errno == EAGAIN)
        return waitFor(socket, Readable, g_timing.stalledReply) != Wait::Ready;
    if (rules.failedReads.fetch_add(1) >= toleratedReadErrors)
        return true;
    std::this_thread::sleep_for(g_timing.retry);
    return false;
}

/// All threads share the counter: it is written only when that changes it.
void forgetFailedReads(std::atomic<int>& failedReads)
{
    if (failedReads.load(std::memory_order_relaxed) != 0)
        failedReads.store(0, std::memory_order_relaxed);
}

/// Reads until the camera closes the connection, the reply is full or reads go on failing; returns the number of bytes
/// that came. A reply may take as long as it likes, but when nothing more comes for a long time it is taken to be
/// complete: no camera holds a call for ever.
std::size_t receive(const FileDescriptor& socket, std::span<char> reply, const ExchangeRules& rules)
{
    char chunk[4096];
    std::size_t total = 0;
    setReceiveLimit(socket, g_timing.stalledReply);
    while (total < reply.size()) {
        const ssize_t count = ::recv(socket.get(), chunk, sizeof chunk, 0);
        if (count == 0 || (count < 0 && readFailedForGood(socket, rules)))
            break;
        if (count < 0)
            continue;
        forgetFailedReads(rules.failedReads);
        if (total < reply.size() - 1)
            std::memcpy(&reply[total], chunk,
                        std::min<std::size_t>(static_cast<std::size_t>(count), reply.size() - 1 - total));
        total += static_cast<std::size_t>(count);
    }
    return total;
}

/// Looks for all refusals in two passes, one for each character that they begin with; the list's first one counts.
int judge(std::string_view reply, const ExchangeRules& rules)
{
    const auto refusals = rules.refusals;
    std::size_t found = refusals.size();
    for (const char statusClass : {'4', '5'}) {
        for (std::size_t at = reply.find(statusClass); at != reply.npos;
             at = reply.find(statusClass, at + 1)) {
            for (std::size_t i = 0; i < found; ++i) {
                if (reply.substr(at).starts_with(refusals[i].text))
                    found = i;
            }
        }
    }
    if (found != refusals.size())
        return failWith(refusals[found].error);
    return reply.find(rules.goodReply) != reply.npos ? 0 : failWith(KX_ERROR_BUSY);
}

} // namespace

int exchange(const sockaddr_in& address, std::string_view request, char* reply, int replySize,
             const ExchangeRules& rules)
{
    const bool blocking = rules.manner == Manner::Blocking;
    const FileDescriptor socket = makeTcpSocket(blocking ? 0 : SOCK_NONBLOCK);
    if (!socket || (!blocking && !setLinger(socket)))
        return -1;
    if (!deliver(socket, address, request, rules))
        return failWith(KX_ERROR_NETWORK);
    const Wait outcome = awaitReply(socket, rules);
    if (outcome == Wait::TimedOut)
        return failWith(KX_ERROR_NETWORK);

    const std::span<char> room(reply, static_cast<std::size_t>(replySize));
    std::memset(reply, 0, room.size() - 1);
    forgetFailedReads(rules.failedReads);
    const std::size_t received = outcome == Wait::Exceptional ? 0 : receive(socket, room, rules);
    const std::string_view text(reply, strnlen(reply, room.size() - 1));
    if (!blocking)
        std::memset(reply + text.size(), 0, room.size() - text.size());
    if (received == 0)
        return rules.nothingReceived ? failWith(*rules.nothingReceived) : -1;
    return judge(text, rules);
}

#include "NetManager/Connection.h"

#include <algorithm>
#include <cerrno>
#include <thread>

#include <sys/socket.h>

#include "NetManager/TransferWatch.h"

namespace
{

constexpr int toleratedReadErrors = 5; // in a row; the next one ends the reading

bool startConnect(const FileDescriptor& socket, const sockaddr_in& address)
{
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

/// All threads share the counter: it is written only when that changes it.
void forgetFailedReads(std::atomic<int>& failedReads)
{
    if (failedReads.load(std::memory_order_relaxed) != 0)
        failedReads.store(0, std::memory_order_relaxed);
}

bool onlyWaits(int error)
{
    return error == EINTR || error == EAGAIN;
}

} // namespace

bool networkFailed(const ExchangeRules& rules)
{
    if (rules.watch == nullptr || !rules.watch->stopped())
        setLastError(KX_ERROR_NETWORK);
    return false;
}

Connection::Connection(const ExchangeRules& rules)
    : rules_(rules), socket_(makeTcpSocket(rules.manner == Manner::Blocking ? 0 : SOCK_NONBLOCK))
{
}

bool Connection::open(const sockaddr_in& address)
{
    if (!socket_ || (!blocking() && !setLinger(socket_)))
        return false;
    if (blocking())
        return connectWithin(address) || networkFailed(rules_);
    startConnect(socket_, address);
    const Wait outcome = wait(Readable | Writable | Exception, rules_.connectWait);
    return (outcome != Wait::TimedOut && outcome != Wait::Failed) || networkFailed(rules_);
}

/// A connect that no camera can stretch beyond the limit, which a blocking one could. A refusal is not told here: it
/// shows when the request is sent.
bool Connection::connectWithin(const sockaddr_in& address)
{
    setSendLimit(socket_, rules_.connectWait);
    if (startConnect(socket_, address))
        return true;
    if (errno == EINTR) // the attempt goes on
        return waitFor(socket_, Writable | Exception, rules_.connectWait) != Wait::TimedOut;
    return errno != EINPROGRESS;
}

bool Connection::send(std::string_view request)
{
    const bool sent = blocking() ? sendWhole(request)
                                 : ::send(socket_.get(), request.data(), request.size(), MSG_NOSIGNAL) >= 0;
    return sent || networkFailed(rules_);
}

/// Cameras take a request that starts again after a partial write, so each attempt writes it from its first byte. The
/// send buffer nearly always takes a whole request at once. Where it does not, a camera that reads nothing for the
/// limit fails the request.
bool Connection::sendWhole(std::string_view request)
{
    std::size_t total = 0;
    while (total < request.size()) {
        const ssize_t written = ::send(socket_.get(), request.data(), request.size(), MSG_NOSIGNAL);
        if (written > 0)
            total += static_cast<std::size_t>(written);
        else if (written == 0)
            std::this_thread::sleep_for(g_timing.retry);
        else if (errno != EINTR || waitFor(socket_, Writable, rules_.connectWait) == Wait::TimedOut)
            return false; // a signal must not begin the limit anew for ever, hence the wait
    }
    return true;
}

bool Connection::sendAll(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (!onlyWaits(errno) || wait(Writable, rules_.replyWait) != Wait::Ready)
            return !isAnswered() && networkFailed(rules_);
    }
    return true;
}

/// A camera that refuses an upload at its head may close before it has taken the rest.
bool Connection::isAnswered() const
{
    constexpr std::string_view opening = "HTTP/";
    char begin[opening.size()];
    const ssize_t count = ::recv(socket_.get(), begin, sizeof begin, MSG_PEEK | MSG_DONTWAIT);
    return count == sizeof begin && std::string_view(begin, sizeof begin) == opening;
}

ReplyEnd Connection::receive(ReplySink& sink)
{
    const Wait outcome = wait(blocking() ? Readable | Exception : unsigned{Readable}, rules_.replyWait);
    if (outcome == Wait::TimedOut || (outcome == Wait::Failed && !blocking()))
        return ReplyEnd::NotBegun;
    forgetFailedReads(rules_.failedReads);
    return outcome == Wait::Exceptional ? ReplyEnd::Closed : readPieces(sink);
}

/// A reply may take as long as it likes, but when nothing more comes for a long time it has ended: no camera holds a
/// call for ever. A failed read that is followed by the connection's end is a reset, which tells itself but once.
ReplyEnd Connection::readPieces(ReplySink& sink)
{
    char chunk[4096];
    bool failed = false;
    setReceiveLimit(socket_, rules_.pieceWait);
    for (;;) {
        const ssize_t count = ::recv(socket_.get(), chunk, sizeof chunk, 0);
        if (count == 0)
            return failed ? ReplyEnd::Broken : ReplyEnd::Closed;
        failed = count < 0 && (failed || !onlyWaits(errno));
        if (count < 0 && readFailedForGood(sink))
            return ReplyEnd::Broken;
        if (count < 0)
            continue;
        forgetFailedReads(rules_.failedReads);
        if (!sink.take({chunk, static_cast<std::size_t>(count)}))
            return ReplyEnd::Enough;
    }
}

/// Counts a failed read; true when the reading must end.
bool Connection::readFailedForGood(const ReplySink& sink)
{
    if (errno == EAGAIN && blocking()) // nothing came within the limit
        return true;
    if (onlyWaits(errno))
        return wait(Readable, isComplete(sink) ? g_timing.completeReply : rules_.pieceWait) != Wait::Ready;
    if (rules_.failedReads.fetch_add(1) >= toleratedReadErrors)
        return true;
    std::this_thread::sleep_for(g_timing.retry);
    return false;
}

/// Waits; Wait::Failed also when the application, asked every now and then, stops the transfer.
Wait Connection::wait(unsigned waitSet, std::chrono::milliseconds limit) const
{
    if (rules_.watch == nullptr || !rules_.watch->watched())
        return waitFor(socket_, waitSet, limit);
    for (;;) {
        const auto slice = std::min(limit, g_timing.watchPause);
        const Wait outcome = waitFor(socket_, waitSet, slice);
        limit -= slice;
        if (outcome != Wait::TimedOut || limit.count() <= 0)
            return outcome;
        if (!rules_.watch->advance())
            return Wait::Failed;
    }
}

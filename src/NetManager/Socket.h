// TCP sockets: ownership, name resolution and waiting.
#pragma once

#include <chrono>
#include <optional>
#include <utility>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

/// Owns a file descriptor.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return descriptor_; }
    /// Hands it over to the caller.
    int release() { return std::exchange(descriptor_, -1); }
    explicit operator bool() const { return descriptor_ >= 0; }

private:
    int descriptor_;
};

/// The first IPv4 address of a host.
std::optional<sockaddr_in> resolveIpv4(const char* host, int port);

/// A new IPv4 stream socket; false when there is none to be had. SOCK_NONBLOCK is a possible flag.
inline FileDescriptor makeTcpSocket(int flags = 0)
{
    return FileDescriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0));
}

/// On close, waits up to this many seconds for unsent data to leave; 0: drops them and resets the connection. False when
/// the system refuses.
bool setLinger(const FileDescriptor& socket, int seconds = 3);

/// How long a connect and a write may take, from now on: -1 after that, and EINPROGRESS or EAGAIN.
void setSendLimit(const FileDescriptor& socket, std::chrono::milliseconds limit);

/// How long a read may wait for the next bytes, from now on: -1 after that, and EAGAIN.
void setReceiveLimit(const FileDescriptor& socket, std::chrono::milliseconds limit);

/// What to wait for on a socket; combined with |.
enum WaitSet : unsigned
{
    Readable = POLLIN,
    Writable = POLLOUT,
    Exception = POLLPRI // urgent data
};

enum class Wait
{
    TimedOut,
    Ready,       // to be read or written, as asked for
    Exceptional, // urgent data and nothing else
    Failed       // the wait itself
};

/// Waits with poll, so that descriptors of any number do. An error or a hang-up counts as ready, since the next
/// operation will tell it. A signal does not cut the wait short; the limit then counts from the first one. A time-out
/// leaves errno as it was.
Wait waitFor(const FileDescriptor& socket, unsigned waitSet, std::chrono::milliseconds limit);

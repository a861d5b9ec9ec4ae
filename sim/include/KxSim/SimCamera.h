// A simulated network camera that runs in this process and answers on a TCP port.
#pragma once

#include "KxSim/Discovery.h"
#include "KxSim/Streaming.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kxsim
{

/// What a camera is made as. Its chip family follows from the last letter of the model.
struct CameraOptions
{
    std::string model = "KX-C200T"; ///< "...B" or "...C": page dialect; "...A": its other half; else TI
    std::string address = "127.0.0.1";
    unsigned short port = 0; ///< 0: any free port, told by SimCamera::port()
    std::string user = "admin";
    std::string password = "admin";
    std::string lineEnd = "\n";                  ///< what ends a line of a reply's body
    std::chrono::milliseconds restartTime{3000}; ///< for so long a restart or a reset refuses connections
    DiscoveryOptions discovery{}; ///< off unless asked for, as it takes part in the whole network
    StreamingOptions streaming{}; ///< off unless asked for: it takes its time to start
};

/// One way of misbehaving towards clients. The camera acts on a request that Slow, CutShort or Endless hits, as only
/// the way of its reply is at fault; it ignores what any other fault hits.
struct Fault
{
    enum class Kind
    {
        None,
        Refuse,       ///< the port answers connection attempts with a reset
        Unreachable,  ///< connection attempts are not answered at all
        SilentBefore, ///< connections are accepted, requests never read
        SilentAfter,  ///< requests are read, never answered
        Slow,         ///< the reply comes in pieces of `bytes`, `pause` apart
        CutShort,     ///< the connection closes after `bytes` of the reply
        Endless,      ///< the body never ends
        Garbage,      ///< random bytes instead of a reply, the same ones every time
        EmptyReply,   ///< the connection closes without a byte
        Mismatch,     ///< an uploaded file is refused as damaged; does not touch other requests
        Status        ///< a reply with `status`
    };

    Kind kind = Kind::None;
    int status = 500;                    ///< for Status
    std::size_t bytes = 16;              ///< for Slow and CutShort
    std::chrono::milliseconds pause{10}; ///< for Slow

    // Not for Refuse, Unreachable and SilentBefore, which hit connections before there is a request:
    std::string onlyFor{}; ///< only requests whose target holds this text; empty: all
    int count = 0;         ///< how many requests are hit; 0: until cleared
};

/// A request as it came over the wire.
struct Request
{
    std::string text{};   ///< everything up to and including the blank line
    std::string target{}; ///< the second word of the request line
    std::string body{};   ///< what a request with a Content-Length carries
    int status = 0;       ///< the HTTP status sent; 0 when none was: no reply, garbage, or cut before it
};

/// A camera that keeps what it is told. Listens from construction to destruction, on a thread of its own.
/// Every member may be called from any thread.
class SimCamera
{
public:
    /// Throws std::system_error when it cannot listen on the address and port, and std::runtime_error, with a
    /// sentence of its own, when it cannot answer searches or stream.
    explicit SimCamera(CameraOptions options = {});
    ~SimCamera();
    SimCamera(const SimCamera&) = delete;
    SimCamera& operator=(const SimCamera&) = delete;

    const std::string& host() const;
    int port() const;

    /// The value kept under a key that a client reads ("ftpip"); nothing when the camera lacks the key.
    std::optional<std::string> value(const std::string& key) const;
    /// Gives the camera this value, read-only keys and keys that it lacked included.
    void setValue(const std::string& key, const std::string& value);
    /// Makes the camera one that lacks the key.
    void removeValue(const std::string& key);

    /// The file at this path ("/sd/clip.avi"), uploaded ones included; nothing when there is none.
    std::optional<std::string> file(const std::string& path) const;
    /// Gives the camera this file.
    void putFile(const std::string& path, const std::string& content);

    /// Takes the place of the fault before. The next connection meets it; those that are open go on.
    void setFault(const Fault& fault);
    void clearFault();
    /// Answers the next `count` requests whose target holds `targetPart` with these raw bytes. Of several that fit,
    /// the first one ordered goes first. Credentials are not checked, and the camera does not act on the request.
    void replaceReply(const std::string& targetPart, const std::string& rawReply, int count = 1);

    /// The requests so far. One is listed when it is there with its body, and before the last byte of its reply leaves.
    std::vector<Request> requests() const;
    void forgetRequests();
    /// Connections accepted so far, those without a request included.
    std::size_t connections() const;
    /// Called on the camera's thread with each request, before its reply leaves. It may call any member but must not
    /// destroy the camera.
    void onRequest(std::function<void(const Request&)> listener);

    /// What came to the discovery port so far. A datagram is listed before the reply to it leaves.
    std::vector<Probe> probes() const;
    void forgetProbes();
    /// The same as onRequest, but on the thread that answers searches.
    void onProbe(std::function<void(const Probe&)> listener);

    /// Takes the place of the stream fault before; {} ends it. Who watches meets it as well, but for faults that lie
    /// in the way to a stream.
    void setStreamFault(const StreamFault& fault);
    /// The requests to the RTSP port so far. One is listed before the reply to it leaves.
    std::vector<StreamRequest> streamRequests() const;
    void forgetStreamRequests();
    /// The same as onRequest, but on the thread that answers these requests.
    void onStreamRequest(std::function<void(const StreamRequest&)> listener);

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

/// A well-formed reply with this body, as a camera would send it, for replaceReply.
std::string httpReply(const std::string& body, const std::string& status = "200 OK");

} // namespace kxsim

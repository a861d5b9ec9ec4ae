// The clients of the RTSP port: how many there may be, what they ask, and what the faults do to them.
#pragma once

#include "CurrentFault.h"
#include "EventLoop.h"
#include "Owned.h"

#include <gst/rtsp-server/rtsp-server.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kxsim
{

/// Used on the server's thread alone, but for watching().
class Audience
{
public:
    /// `report` is called with each request.
    Audience(GstRTSPServer* server, EventLoop& loop, std::shared_ptr<const CurrentFault> fault,
             std::function<void(const StreamRequest&)> report);
    ~Audience();
    Audience(const Audience&) = delete;
    Audience& operator=(const Audience&) = delete;

    void limitTo(int clients) { most_ = clients; }
    /// How many clients have a stream.
    int watching() const { return count_; }

    void closeAll();
    /// Soon closes the connections of those who have the stream of this path.
    void closeThoseOf(const std::string& path);
    /// The fault is another one: it also hits who is here already.
    void meetFault();

private:
    template <auto Member>
    struct Relay;
    template <auto Member>
    void connect(GstRTSPClient* client, const char* signal);

    std::vector<Owned<GstRTSPClient>> everybody() const;
    void welcome(GstRTSPClient* client);
    void silence(GstRTSPClient* client);

    // What clients do; a context is that of the request.
    GstRTSPStatusCode before(GstRTSPClient* client, GstRTSPContext* context);
    void hasSetUp(GstRTSPClient* client, GstRTSPContext* context);
    void hasPlayed(GstRTSPClient* client, GstRTSPContext* context);
    void hasTornDown(GstRTSPClient* client, GstRTSPContext* context);
    void hasLeft(GstRTSPClient* client);
    void answering(GstRTSPClient* client, GstRTSPContext* context, GstRTSPMessage* reply);

    void falsify(GstRTSPMessage* reply) const;
    void closeAfter(std::chrono::milliseconds time, GstRTSPClient* client);

    GstRTSPServer* const server_;
    EventLoop& loop_;
    const std::shared_ptr<const CurrentFault> fault_;
    const std::function<void(const StreamRequest&)> report_;
    int most_ = 0;
    std::map<GstRTSPClient*, std::string> watchers_; ///< who has a stream set up, and its path or longer
    std::atomic<int> count_ = 0;
    std::set<GstRTSPClient*> unanswered_; ///< who gets no answers any more
};

} // namespace kxsim

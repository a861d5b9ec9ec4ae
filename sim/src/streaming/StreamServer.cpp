// One thread runs the server and everything about its clients; what they are sent comes from threads of their pipelines.
// Other threads only leave tasks to that thread and wait until they are done.
#include "StreamServer.h"

#include <stdexcept>
#include <system_error>
#include <utility>

namespace kxsim
{
namespace
{

using namespace std::chrono_literals;
using Kind = StreamFault::Kind;

void startGStreamer()
{
    gst_init(nullptr, nullptr); // as often as one likes
    for (const char* const needed : {"appsrc", "x264enc", "jpegenc", "rtph264pay", "rtpjpegpay",
                                     "audiotestsrc", "voaacenc", "rtpmp4gpay", "mulawenc", "rtppcmupay"}) {
        const Owned<GstElementFactory> factory(gst_element_factory_find(needed));
        if (!factory)
            throw std::runtime_error(std::string("cannot stream: GStreamer has no element ") + needed);
    }
}

/// A server whose clients are all served by the thread that it is attached to.
Owned<GstRTSPServer> makeServer()
{
    startGStreamer();
    Owned<GstRTSPServer> server(gst_rtsp_server_new());
    const Owned<GstRTSPThreadPool> threads(gst_rtsp_server_get_thread_pool(server.get()));
    gst_rtsp_thread_pool_set_max_threads(threads.get(), 0);
    return server;
}

} // namespace

StreamServer::StreamServer(const std::string& address, ServicePlan plan,
                           std::function<void(const StreamRequest&)> report)
    : address_(address), server_(makeServer())
{
    loop_.run([&] {
        door_ = std::make_unique<StreamDoor>(server_.get(), loop_.context(), address_, plan.port);
        audience_ = std::make_unique<Audience>(server_.get(), loop_, fault_, std::move(report));
        mounts_[0] = std::make_unique<Mount>(server_.get(), address_, "/main", fault_);
        mounts_[1] = std::make_unique<Mount>(server_.get(), address_, "/sub", fault_);
        plan.port = port_ = door_->port();
        apply(plan);
        updateDoor();
    });
    // Clients that are gone without a word keep their streams for a minute.
    loop_.every(5s, [this] {
        const Owned<GstRTSPSessionPool> sessions(gst_rtsp_server_get_session_pool(server_.get()));
        gst_rtsp_session_pool_cleanup(sessions.get());
    });
}

StreamServer::~StreamServer()
{
    loop_.run([this] { close(); });
}

void StreamServer::close()
{
    door_.reset();
    audience_.reset();
    const auto remove =
        +[](GstRTSPSessionPool*, GstRTSPSession*, gpointer) { return GST_RTSP_FILTER_REMOVE; };
    const Owned<GstRTSPSessionPool> sessions(gst_rtsp_server_get_session_pool(server_.get()));
    gst_rtsp_session_pool_filter(sessions.get(), remove, nullptr);
    for (auto& mount : mounts_)
        mount.reset();
}

void StreamServer::follow(const std::function<ServicePlan()>& plan)
{
    loop_.run([&] { apply(plan()); });
}

void StreamServer::apply(const ServicePlan& plan)
{
    const ServicePlan before = std::exchange(plan_, plan);
    audience_->limitTo(plan.mostClients);
    for (std::size_t i = 0; i < mounts_.size(); ++i)
        if (mounts_[i]->follow(plan.streams[i]))
            audience_->closeThoseOf(mounts_[i]->path());
    if (plan.users != before.users)
        admitUsers();
    if (plan.port != door_->port() && plan.port != before.port)
        moveTo(plan.port);
}

// Where another program has the port, the camera stays at the one it has.
void StreamServer::moveTo(int port)
{
    try {
        auto door = std::make_unique<StreamDoor>(server_.get(), loop_.context(), address_, port);
        door_ = std::move(door);
        port_ = door_->port();
        updateDoor();
    } catch (const std::system_error&) {
    }
}

void StreamServer::admitUsers()
{
    const Owned<GstRTSPAuth> auth(gst_rtsp_auth_new());
    gst_rtsp_auth_set_supported_methods(auth.get(), GST_RTSP_AUTH_DIGEST);
    gst_rtsp_auth_set_realm(auth.get(), "Simulated camera");
    GstRTSPToken* const token =
        gst_rtsp_token_new(GST_RTSP_TOKEN_MEDIA_FACTORY_ROLE, G_TYPE_STRING, userRole, nullptr);
    if (fault_->now().kind != Kind::RefusePassword)
        for (const Credentials& user : plan_.users)
            gst_rtsp_auth_add_digest(auth.get(), user.name.c_str(), user.password.c_str(), token);
    gst_rtsp_token_unref(token);
    gst_rtsp_server_set_auth(server_.get(), auth.get());
}

void StreamServer::setFault(const StreamFault& fault)
{
    loop_.run([&] {
        fault_->set(fault);
        admitUsers();
        updateDoor();
        audience_->meetFault();
    });
}

void StreamServer::updateDoor()
{
    const Kind kind = fault_->now().kind;
    if (restarts_ > 0 || kind == Kind::Refuse)
        door_->set(StreamDoor::State::Closed);
    else
        door_->set(kind == Kind::SilentBefore ? StreamDoor::State::Silent : StreamDoor::State::Open);
}

void StreamServer::restart(std::chrono::milliseconds outage)
{
    loop_.run([&] {
        ++restarts_;
        updateDoor();
        audience_->closeAll();
        loop_.after(outage, [this] {
            --restarts_;
            updateDoor();
        });
    });
}

} // namespace kxsim

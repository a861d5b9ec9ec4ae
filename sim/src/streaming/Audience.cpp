#include "Audience.h"

#include "../Garbage.h"

#include <string_view>
#include <utility>
#include <vector>

namespace kxsim
{
namespace
{

using Kind = StreamFault::Kind;

std::string pathOf(const GstRTSPContext* context)
{
    return context && context->uri && context->uri->abspath ? context->uri->abspath : "";
}

std::string methodOf(const GstRTSPContext* context)
{
    const char* const name = context ? gst_rtsp_method_as_text(context->method) : nullptr;
    return name ? name : "";
}

int statusOf(const GstRTSPMessage* reply)
{
    return reply->type == GST_RTSP_MESSAGE_RESPONSE ? static_cast<int>(reply->type_data.response.code) : 0;
}

gboolean swallow(GstRTSPClient*, GstRTSPMessage*, guint, gboolean, gpointer)
{
    return TRUE;
}

std::string bodyOf(const GstRTSPMessage* message)
{
    guint8* bytes = nullptr;
    guint size = 0;
    gst_rtsp_message_get_body(message, &bytes, &size);
    return bytes ? std::string(reinterpret_cast<const char*>(bytes)) : "";
}

/// For tasks, which can be copied.
std::shared_ptr<GstRTSPClient> keep(GstRTSPClient* client)
{
    return {GST_RTSP_CLIENT(g_object_ref(client)), g_object_unref};
}

// Up to the end of the attribute.
void replaceValue(std::string& description, std::string_view name, std::string_view value)
{
    const std::size_t found = description.find(name);
    if (found == std::string::npos)
        return;
    const std::size_t start = found + name.size();
    description.replace(start, description.find_first_of(";\r\n", start) - start, value);
}

} // namespace

Audience::Audience(GstRTSPServer* server, EventLoop& loop, std::shared_ptr<const CurrentFault> fault,
                   std::function<void(const StreamRequest&)> report)
    : server_(server), loop_(loop), fault_(std::move(fault)), report_(std::move(report))
{
    const auto connected = +[](GstRTSPServer*, GstRTSPClient* client, gpointer self) {
        static_cast<Audience*>(self)->welcome(client);
    };
    g_signal_connect(server_, "client-connected", G_CALLBACK(connected), this);
}

Audience::~Audience()
{
    const auto clients = everybody();
    closeAll();
    for (const auto& client : clients)
        g_signal_handlers_disconnect_by_data(client.get(), this);
    g_signal_handlers_disconnect_by_data(server_, this);
}

/// Hands a signal of a client on to the member that stands for it.
template <typename Result, typename... Arguments, Result (Audience::*Member)(GstRTSPClient*, Arguments...)>
struct Audience::Relay<Member>
{
    static Result call(GstRTSPClient* client, Arguments... arguments, gpointer self)
    {
        return (static_cast<Audience*>(self)->*Member)(client, arguments...);
    }
};

template <auto Member>
void Audience::connect(GstRTSPClient* client, const char* signal)
{
    g_signal_connect(client, signal, G_CALLBACK(Relay<Member>::call), this);
}

void Audience::welcome(GstRTSPClient* client)
{
    for (const char* const request : {"pre-options-request", "pre-describe-request", "pre-setup-request",
                                      "pre-play-request", "pre-pause-request", "pre-teardown-request",
                                      "pre-get-parameter-request", "pre-set-parameter-request"})
        connect<&Audience::before>(client, request);
    connect<&Audience::hasSetUp>(client, "setup-request");
    connect<&Audience::hasPlayed>(client, "play-request");
    connect<&Audience::hasTornDown>(client, "teardown-request");
    connect<&Audience::hasLeft>(client, "closed");
    connect<&Audience::answering>(client, "send-message");
}

GstRTSPStatusCode Audience::before(GstRTSPClient* client, GstRTSPContext* context)
{
    const StreamFault fault = fault_->now();
    if (fault.kind == Kind::SilentAfter && fault.method == methodOf(context))
        silence(client);
    const bool wantsPlace = context->method == GST_RTSP_SETUP && !watchers_.contains(client);
    if (wantsPlace && watching() >= most_)
        return GST_RTSP_STS_NOT_ENOUGH_BANDWIDTH;
    return GST_RTSP_STS_OK;
}

// From now on nothing that the server has for the client is sent.
void Audience::silence(GstRTSPClient* client)
{
    unanswered_.insert(client);
    gst_rtsp_client_set_send_messages_func(client, swallow, nullptr, nullptr);
}

void Audience::hasSetUp(GstRTSPClient* client, GstRTSPContext* context)
{
    watchers_[client] = pathOf(context);
    count_ = static_cast<int>(watchers_.size());
}

void Audience::hasPlayed(GstRTSPClient* client, GstRTSPContext*)
{
    const StreamFault fault = fault_->now();
    if (fault.kind == Kind::Disconnect)
        closeAfter(fault.after, client);
}

void Audience::hasTornDown(GstRTSPClient* client, GstRTSPContext*)
{
    watchers_.erase(client);
    count_ = static_cast<int>(watchers_.size());
}

// Where sending failed just before, the server has left itself a task to close the client, without keeping it for that.
void Audience::hasLeft(GstRTSPClient* client)
{
    loop_.whenIdle([kept = keep(client)] {});
    unanswered_.erase(client);
    hasTornDown(client, nullptr);
}

void Audience::meetFault()
{
    for (const auto& [client, path] : watchers_)
        hasPlayed(client, nullptr);
}

void Audience::closeAfter(std::chrono::milliseconds time, GstRTSPClient* client)
{
    loop_.after(time, [kept = keep(client)] { gst_rtsp_client_close(kept.get()); });
}

std::vector<Owned<GstRTSPClient>> Audience::everybody() const
{
    std::vector<Owned<GstRTSPClient>> everybody;
    GList* const clients = gst_rtsp_server_client_filter(server_, nullptr, nullptr);
    for (const GList* client = clients; client; client = client->next)
        everybody.emplace_back(GST_RTSP_CLIENT(client->data));
    g_list_free(clients);
    return everybody;
}

void Audience::closeAll()
{
    for (const auto& client : everybody())
        gst_rtsp_client_close(client.get());
}

void Audience::closeThoseOf(const std::string& path)
{
    for (const auto& [client, watched] : watchers_)
        if (watched.starts_with(path))
            closeAfter(std::chrono::milliseconds(0), client);
}

void Audience::answering(GstRTSPClient* client, GstRTSPContext* context, GstRTSPMessage* reply)
{
    if (reply->type != GST_RTSP_MESSAGE_RESPONSE || !context)
        return;
    if (context->method == GST_RTSP_DESCRIBE && statusOf(reply) == GST_RTSP_STS_OK)
        falsify(reply);
    const int status = unanswered_.contains(client) ? 0 : statusOf(reply);
    report_({methodOf(context), pathOf(context), status});
}

void Audience::falsify(GstRTSPMessage* reply) const
{
    std::string description = bodyOf(reply);
    switch (fault_->now().kind) {
    case Kind::BadParameters:
        replaceValue(description, "sprop-parameter-sets=", "AAAA,AAAA");
        break;
    case Kind::WrongCodec:
        replaceValue(description, "a=rtpmap:96 ", "H265/90000");
        break;
    case Kind::Garbage:
        description = garbage();
        break;
    default:
        return;
    }
    gst_rtsp_message_set_body(reply, reinterpret_cast<const guint8*>(description.data()),
                              static_cast<guint>(description.size()));
}

} // namespace kxsim

// The camera put together: the device behind the server, and between them what a test orders and sees.
// One mutex guards everything that other threads can reach, but for the journals, which have their own. It is never held
// while a listener is called or while another thread is waited for.
#include "KxSim/SimCamera.h"

#include "Device.h"
#include "Garbage.h"
#include "HttpServer.h"
#include "HttpText.h"
#include "Journal.h"
#include "discovery/Discovery.h"
#include "streaming/Streaming.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace kxsim
{
namespace
{

using Kind = Fault::Kind;

struct Replacement
{
    std::string targetPart;
    std::string reply;
    int left = 0;
};

bool hitsConnections(Kind kind)
{
    return kind == Kind::Refuse || kind == Kind::Unreachable || kind == Kind::SilentBefore;
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

bool isUpload(const Request& request)
{
    return request.text.starts_with("POST ");
}

Delivery delivered(std::string reply, const Fault& fault)
{
    switch (fault.kind) {
    case Kind::SilentAfter:
        return {"", Delivery::Manner::Never};
    case Kind::Slow:
        return {std::move(reply), Delivery::Manner::InPieces, fault.bytes, fault.pause};
    case Kind::CutShort:
        return {reply.substr(0, fault.bytes)};
    case Kind::Endless:
        return {std::move(reply), Delivery::Manner::Endless};
    default:
        return {std::move(reply)};
    }
}

} // namespace

class SimCamera::Impl final : private HttpHandler
{
public:
    explicit Impl(CameraOptions options)
        : host_(options.address), restartTime_(options.restartTime), device_(options),
          server_(options.address, options.port, *this)
    {
        if (options.streaming.port)
            streaming_.start(host_, *options.streaming.port, device_.settings());
        device_.placeAt(host_, server_.port());
        server_.start();
        if (!options.discovery.interfaceAddress.empty())
            discovery_.start(options.discovery, {options.model, host_ + ":" + std::to_string(port()),
                                                 device_.settings().text("macaddress")});
    }

    const std::string& host() const { return host_; }
    int port() const { return server_.port(); }
    Discovery& discovery() { return discovery_; }
    Streaming& streaming() { return streaming_; }

    /// Runs `use` on the device, alone.
    template <typename Use>
    auto withDevice(Use use)
    {
        const std::lock_guard lock(mutex_);
        streaming_.report(device_.settings());
        return use(device_);
    }
    /// The same where `use` changes settings.
    template <typename Use>
    void changeDevice(Use use)
    {
        withDevice(use);
        updateStreams();
    }

    void setFault(const Fault& fault);
    void replaceReply(Replacement replacement);

    Journal<Request>& requests() { return requests_; }
    std::size_t connections();

private:
    Door door() override;
    bool accepted() override;
    Delivery answer(const std::string& head, const std::string& body) override;

    Fault takeFault(const std::string& target);
    std::optional<std::string> takeReplacement(const std::string& target);
    void updateStreams();
    std::string replyTo(const Request& request, const Fault& fault);
    std::string regularReply(const Request& request, bool tellLength);

    const std::string host_;
    const std::chrono::milliseconds restartTime_;

    std::mutex mutex_;
    Device device_;
    Fault fault_;
    std::deque<Replacement> replacements_;
    std::size_t connections_ = 0;

    Journal<Request> requests_;

    Streaming streaming_; // asks for the device on its thread
    HttpServer server_;   // its thread uses all of the above
    Discovery discovery_;
};

void SimCamera::Impl::setFault(const Fault& fault)
{
    {
        const std::lock_guard lock(mutex_);
        fault_ = fault;
    }
    server_.refreshDoor();
}

void SimCamera::Impl::replaceReply(Replacement replacement)
{
    const std::lock_guard lock(mutex_);
    replacements_.push_back(std::move(replacement));
}

std::size_t SimCamera::Impl::connections()
{
    const std::lock_guard lock(mutex_);
    return connections_;
}

Door SimCamera::Impl::door()
{
    const std::lock_guard lock(mutex_);
    switch (fault_.kind) {
    case Kind::Refuse:
        return Door::Refusing;
    case Kind::Unreachable:
        return Door::Dead;
    default:
        return Door::Open;
    }
}

bool SimCamera::Impl::accepted()
{
    const std::lock_guard lock(mutex_);
    ++connections_;
    return fault_.kind != Kind::SilentBefore;
}

Delivery SimCamera::Impl::answer(const std::string& head, const std::string& body)
{
    Request request{head, targetOf(head), body};
    Delivery delivery;
    {
        const std::lock_guard lock(mutex_);
        streaming_.report(device_.settings());
        const Fault fault = takeFault(request.target);
        delivery = delivered(replyTo(request, fault), fault);
        if (device_.takeRestart())
            delivery.outage = restartTime_;
    }
    request.status = statusOf(delivery.bytes);
    if (delivery.outage)
        streaming_.restart(*delivery.outage);
    updateStreams();
    requests_.add(request);
    return delivery;
}

// The mutex is free while the streams' thread is waited for: it takes it to read the settings.
void SimCamera::Impl::updateStreams()
{
    if (withDevice([this](Device& device) { return streaming_.isOutdated(device.settings()); }))
        streaming_.follow(
            [this] { return withDevice([](Device& device) { return planOf(device.settings()); }); });
}

Fault SimCamera::Impl::takeFault(const std::string& target)
{
    if (hitsConnections(fault_.kind) || !contains(target, fault_.onlyFor))
        return {};
    const Fault fault = fault_;
    if (fault_.count > 0 && --fault_.count == 0)
        fault_ = {};
    return fault;
}

std::optional<std::string> SimCamera::Impl::takeReplacement(const std::string& target)
{
    const auto fits = [&](const Replacement& r) { return contains(target, r.targetPart); };
    const auto found = std::find_if(replacements_.begin(), replacements_.end(), fits);
    if (found == replacements_.end())
        return std::nullopt;
    std::string reply = found->reply;
    if (--found->left <= 0)
        replacements_.erase(found);
    return reply;
}

std::string SimCamera::Impl::replyTo(const Request& request, const Fault& fault)
{
    switch (fault.kind) {
    case Kind::SilentAfter:
    case Kind::EmptyReply:
        return "";
    case Kind::Garbage:
        return garbage();
    case Kind::Status:
        return renderReply(fault.status, statusText(fault.status));
    case Kind::Mismatch:
        if (isUpload(request))
            return renderReply(200, "5 mismatch\n");
        break;
    default:
        break;
    }
    if (auto reply = takeReplacement(request.target))
        return *reply;
    return regularReply(request, fault.kind != Kind::Endless);
}

std::string SimCamera::Impl::regularReply(const Request& request, bool tellLength)
{
    Device::Answer answer;
    if (!device_.admits(headerOf(request.text, "Authorization")))
        answer = {401, statusText(401)};
    else if (request.target.empty())
        answer = {400, statusText(400)};
    else if (isUpload(request))
        answer = device_.answerUpload(request.target,
                                      uploadedFile(headerOf(request.text, "Content-Type"), request.body));
    else
        answer = device_.answer(request.target);
    if (!answer.fileName.empty())
        return renderFile(answer.fileName, answer.body, tellLength);
    return renderReply(answer.status, answer.body, tellLength);
}

SimCamera::SimCamera(CameraOptions options) : impl_(std::make_unique<Impl>(std::move(options))) {}

SimCamera::~SimCamera() = default;

const std::string& SimCamera::host() const
{
    return impl_->host();
}

int SimCamera::port() const
{
    return impl_->port();
}

std::optional<std::string> SimCamera::value(const std::string& key) const
{
    return impl_->withDevice([&](Device& device) { return device.settings().find(key); });
}

void SimCamera::setValue(const std::string& key, const std::string& value)
{
    impl_->changeDevice([&](Device& device) { device.settings().put(key, value); });
}

void SimCamera::removeValue(const std::string& key)
{
    impl_->changeDevice([&](Device& device) { device.settings().remove(key); });
}

std::optional<std::string> SimCamera::file(const std::string& path) const
{
    return impl_->withDevice([&](Device& device) -> std::optional<std::string> {
        const auto found = device.files().find(path);
        return found != device.files().end() ? std::optional(found->second) : std::nullopt;
    });
}

void SimCamera::putFile(const std::string& path, const std::string& content)
{
    impl_->withDevice([&](Device& device) { device.files().insert_or_assign(path, content); });
}

void SimCamera::setFault(const Fault& fault)
{
    impl_->setFault(fault);
}

void SimCamera::clearFault()
{
    impl_->setFault({});
}

void SimCamera::replaceReply(const std::string& targetPart, const std::string& rawReply, int count)
{
    impl_->replaceReply({targetPart, rawReply, count});
}

std::vector<Request> SimCamera::requests() const
{
    return impl_->requests().entries();
}

void SimCamera::forgetRequests()
{
    impl_->requests().clear();
}

std::size_t SimCamera::connections() const
{
    return impl_->connections();
}

void SimCamera::onRequest(std::function<void(const Request&)> listener)
{
    impl_->requests().onEntry(std::move(listener));
}

std::vector<Probe> SimCamera::probes() const
{
    return impl_->discovery().probes().entries();
}

void SimCamera::forgetProbes()
{
    impl_->discovery().probes().clear();
}

void SimCamera::onProbe(std::function<void(const Probe&)> listener)
{
    impl_->discovery().probes().onEntry(std::move(listener));
}

void SimCamera::setStreamFault(const StreamFault& fault)
{
    impl_->streaming().setFault(fault);
}

std::vector<StreamRequest> SimCamera::streamRequests() const
{
    return impl_->streaming().requests().entries();
}

void SimCamera::forgetStreamRequests()
{
    impl_->streaming().requests().clear();
}

void SimCamera::onStreamRequest(std::function<void(const StreamRequest&)> listener)
{
    impl_->streaming().requests().onEntry(std::move(listener));
}

} // namespace kxsim

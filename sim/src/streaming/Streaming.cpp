#include "Streaming.h"

#include "StreamServer.h"

#include <stdexcept>
#include <system_error>
#include <utility>

namespace kxsim
{

Streaming::Streaming() = default;

Streaming::~Streaming() = default;

void Streaming::start(const std::string& address, unsigned short port, Settings& settings)
{
    settings.put("mainrtspport", std::to_string(port));
    try {
        server_ = std::make_unique<StreamServer>(
            address, planOf(settings), [this](const StreamRequest& request) { requests_.add(request); });
    } catch (const std::system_error& error) {
        throw std::runtime_error("cannot stream on " + address + ":" + std::to_string(port) + ": " +
                                 error.code().message());
    }
    report(settings);
    known_ = planOf(settings);
}

void Streaming::report(Settings& settings) const
{
    constexpr char anyPort[] = "0";
    if (!server_)
        return;
    settings.keep("curmaxconn", std::to_string(server_->watching()));
    if (settings.text("mainrtspport") == anyPort)
        settings.keep("mainrtspport", std::to_string(server_->port()));
}

bool Streaming::isOutdated(const Settings& settings)
{
    if (!server_)
        return false;
    const ServicePlan before = std::exchange(known_, planOf(settings));
    return before != known_;
}

void Streaming::follow(std::function<ServicePlan()> plan)
{
    server_->follow(std::move(plan));
}

void Streaming::setFault(const StreamFault& fault)
{
    if (server_)
        server_->setFault(fault);
}

void Streaming::restart(std::chrono::milliseconds outage)
{
    if (server_)
        server_->restart(outage);
}

} // namespace kxsim

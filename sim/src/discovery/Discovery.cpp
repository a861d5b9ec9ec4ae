#include "Discovery.h"

#include "../Garbage.h"

#include <stdexcept>
#include <system_error>

namespace kxsim
{

Discovery::~Discovery()
{
    if (!server_)
        return;
    server_->stop();
    server_->announce(service_->bye());
}

void Discovery::start(const DiscoveryOptions& options, const Identity& identity)
{
    options_ = options;
    service_.emplace(options, identity);
    DatagramHandler& handler = *this;
    try {
        server_.emplace(options.interfaceAddress, handler);
    } catch (const std::system_error& error) {
        throw std::runtime_error("cannot answer searches on " + options.interfaceAddress + ": " +
                                 error.code().message());
    }
    server_->announce(service_->hello());
    server_->start();
}

DatagramReply Discovery::answer(const std::string& datagram, const std::string& address, unsigned short port)
{
    const Question question = readQuestion(datagram);
    if (question.kind == Question::Kind::Announcement)
        return {};
    DatagramReply reply = replyTo(question);
    probes_.add({datagram, address, port, reply.times > 0});
    return reply;
}

DatagramReply Discovery::replyTo(const Question& question)
{
    if (!service_->isMeantBy(question))
        return {};
    return {textFor(question).substr(0, options_.longest), options_.times, options_.delay};
}

std::string Discovery::textFor(const Question& question)
{
    switch (options_.reply) {
    case DiscoveryOptions::Reply::SoapFault:
        return service_->fault(question);
    case DiscoveryOptions::Reply::Garbage:
        return garbage();
    case DiscoveryOptions::Reply::Raw:
        return options_.raw;
    case DiscoveryOptions::Reply::Matches:
        break;
    }
    return service_->matches(question);
}

} // namespace kxsim

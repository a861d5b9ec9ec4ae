// The camera as searches see it: which questions are meant for it, and the messages that it sends. No sockets.
#pragma once

#include "KxSim/Discovery.h"
#include "Message.h"
#include "Question.h"

#include <string>
#include <string_view>
#include <vector>

namespace kxsim
{

/// What is true of the camera, whatever it is to tell.
struct Identity
{
    std::string model;
    std::string place; ///< "ADDRESS:PORT" of its HTTP service
    std::string macAddress;
};

/// Messages are counted, so one thread at a time makes them.
class TargetService
{
public:
    TargetService(const DiscoveryOptions& options, const Identity& identity);

    bool isMeantBy(const Question& question) const;

    /// ProbeMatches or ResolveMatches, as the question was.
    std::string matches(const Question& question);
    std::string fault(const Question& question);
    std::string hello();
    std::string bye();

private:
    struct Told ///< what goes out of a Description
    {
        std::string endpoint;
        std::string scopes;
        std::string xaddrs;
    };

    Message message(std::string_view to, std::string_view action, const std::string& relatesTo = "");
    static void identify(pugi::xml_node parent, const Told& told);
    static void describe(pugi::xml_node parent, const Told& told);
    bool hasScopes(const std::vector<std::string>& asked, const std::string& matchBy) const;

    const bool soap11_;
    const std::string node_; ///< the part of identifiers that tells this camera from others
    std::vector<Told> told_; ///< the camera itself comes first
    const long long instance_;
    unsigned messages_ = 0;
};

} // namespace kxsim

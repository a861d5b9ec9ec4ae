// How the camera answers searches: its part on the network, and the ways of misleading whoever searches.
#pragma once

#include "../Journal.h"
#include "DiscoveryServer.h"
#include "KxSim/Discovery.h"
#include "TargetService.h"

#include <optional>
#include <string>

namespace kxsim
{

/// Takes no part until started; then to its end. Other members may be called from any thread.
class Discovery final : private DatagramHandler
{
public:
    Discovery() = default;
    ~Discovery();
    Discovery(const Discovery&) = delete;
    Discovery& operator=(const Discovery&) = delete;

    /// Throws std::runtime_error that says why, when it cannot take part.
    void start(const DiscoveryOptions& options, const Identity& identity);

    Journal<Probe>& probes() { return probes_; }

private:
    DatagramReply answer(const std::string& datagram, const std::string& address,
                         unsigned short port) override;
    DatagramReply replyTo(const Question& question);
    std::string textFor(const Question& question);

    DiscoveryOptions options_;
    std::optional<TargetService> service_;
    Journal<Probe> probes_;

    std::optional<DiscoveryServer> server_; // last: its thread uses all of the above
};

} // namespace kxsim

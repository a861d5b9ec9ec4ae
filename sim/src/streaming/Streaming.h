// The camera's streams, between its settings and the server.
#pragma once

#include "../Journal.h"
#include "../Settings.h"
#include "KxSim/Streaming.h"
#include "StreamPlan.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace kxsim
{

class StreamServer;

/// Does nothing until started.
class Streaming
{
public:
    Streaming();
    ~Streaming();
    Streaming(const Streaming&) = delete;
    Streaming& operator=(const Streaming&) = delete;

    /// Puts the port into the settings. Throws std::runtime_error that says why, when it cannot stream.
    void start(const std::string& address, unsigned short port, Settings& settings);

    // The settings are the caller's to guard during these two:
    /// Puts into the settings what they tell of the streams.
    void report(Settings& settings) const;
    /// Whether settings that count for the streams have changed since it was last asked.
    bool isOutdated(const Settings& settings);

    /// Streams as `plan` then says, which is called on another thread.
    void follow(std::function<ServicePlan()> plan);
    void setFault(const StreamFault& fault);
    void restart(std::chrono::milliseconds outage);
    Journal<StreamRequest>& requests() { return requests_; }

private:
    Journal<StreamRequest> requests_;
    ServicePlan known_;
    std::unique_ptr<StreamServer> server_; // last: its thread uses the journal
};

} // namespace kxsim

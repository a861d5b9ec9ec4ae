#include "KxSearch/Search.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <span>

#include "Core/SdkState.h"
#include "Core/Timing.h"
#include "KxSearch/Search/DiscoveryLookupBinding.h"
#include "soapH.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int defaultSeconds = 2;
constexpr int defaultRounds = 3;
constexpr int mostMatches = 72;

char multicastGroup[] = "soap.udp://239.255.255.250:3702";
char messageId[] = "uuid:cff0d69d-5934-4723-888e-3a969ff06ed3";
char recipient[] = "urn:schemas-xmlsoap-org:ws:2005:04:discovery";
char action[] =
    "http://schemas.xmllocal_soap.org/ws/2005/04/discovery/Probe"; // the second Probe has the standard one
char nothing[] = "";

bool isInRange(int value)
{
    return value >= 1 && value <= 10;
}

void setReceiveTimeout(struct soap& context, int seconds)
{
    const auto limit = std::chrono::microseconds(seconds * g_timing.searchSecond);
    context.recv_timeout = -static_cast<int>(limit.count()); // negative: in microseconds
}

/// Asks everything that listens for what it is.
int sendProbe(DiscoveryLookupBinding& proxy, d__ProbeMatchesType& matches)
{
    SOAP_ENV__Header header{};
    header.wsa__MessageID = messageId;
    header.wsa__To = recipient;
    header.wsa__Action = action;
    d__ScopesType scopes{};
    scopes.__item = nothing;
    d__ProbeType probe{};
    probe.Types = nothing;
    probe.Scopes = &scopes;

    proxy.endpoint = multicastGroup;
    proxy.context()->header = &header;
    const int error = proxy.__dndl_Probe_Start(&probe, &matches);
    proxy.context()->header = nullptr;
    return error;
}

/// Returns whether a reply came. Replies that count for nothing can not keep it for ever.
bool listen(DiscoveryLookupBinding& proxy, d__ProbeMatchesType& matches, int idleRounds, Reporter& reporter)
{
    bool answered = false;
    int count = 0;
    int failures = 0;
    Clock::duration wasted{};
    while (failures < idleRounds && count < mostMatches && wasted < g_timing.searchWasted) {
        const auto begin = Clock::now();
        const int error = proxy.__dndl_Probe_Receive(nullptr, &matches);
        const auto waited = Clock::now() - begin;
        const int counted = error == SOAP_OK ? reporter.report(matches) : 0;
        answered = answered || error == SOAP_OK;
        failures += error != SOAP_OK;
        count += counted;
        wasted += counted == 0 ? waited : Clock::duration();
    }
    return answered;
}

int search(int recvTimeoutSeconds, int idleRounds, Reporter reporter)
{
    DiscoveryLookupBinding proxy(soap_new());
    if (proxy.context() == nullptr)
        return -1;
    setReceiveTimeout(*proxy.context(), isInRange(recvTimeoutSeconds) ? recvTimeoutSeconds : defaultSeconds);

    d__ProbeMatchesType matches{};
    if (sendProbe(proxy, matches) != SOAP_OK)
        return -1;
    const int rounds = isInRange(idleRounds) ? idleRounds : defaultRounds;
    return listen(proxy, matches, rounds, reporter) ? 0 : -1;
}

/// The application's signals are for its own threads; and each would begin the wait for a datagram anew.
void blockSignals()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

} // namespace

Reporter::Reporter(fSearchCallBack callback, void* user) : callback_(callback), user_(user) {}

int Reporter::report(const d__ProbeMatchesType& matches)
{
    const auto size = static_cast<std::size_t>(matches.__sizeProbeMatch);
    int count = 0;
    for (const d__ProbeMatchType& match : std::span(matches.ProbeMatch, size)) {
        if (match.XAddrs == nullptr)
            continue;
        SearchDeviceInfo device{};
        addresses_.read(match.XAddrs, device);
        if (match.Scopes == nullptr) {
            std::printf("LoadDevice get (*probeMatch)->Scopes == NULL!!");
            continue;
        }
        if (match.Scopes->__item != nullptr)
            readScopes(match.Scopes->__item, device);
        ++count;
        if (isRegistered() && isOwnCamera(device))
            callback_(&device, user_);
    }
    return count;
}

bool Reporter::isRegistered() const
{
    return callback_ != nullptr && m_fSearchCallBack == callback_;
}

void* ThreadSearch(void*)
{
    blockSignals();
    LoadDevice(defaultSeconds, defaultRounds);
    m_pSearchUser = nullptr;
    m_fSearchCallBack = nullptr;
    return nullptr;
}

void* ThreadSilentSearch(void*)
{
    blockSignals();
    search(defaultSeconds, defaultRounds, {nullptr, nullptr});
    --g_nSilentSearches;
    g_nSilentSearches.notify_all();
    return nullptr;
}

int LoadDevice(int recvTimeoutSeconds, int idleRounds)
{
    return search(recvTimeoutSeconds, idleRounds, {m_fSearchCallBack, m_pSearchUser});
}

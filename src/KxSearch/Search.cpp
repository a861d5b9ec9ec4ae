#include "KxSearch/Search.h"

#include <chrono>
#include <cstdio>
#include <span>

#include "Core/SdkState.h"
#include "Core/Timing.h"
#include "KxSearch/Search/DiscoveryLookupBinding.h"
#include "KxSearch/SearchRecord.h"
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

/// Returns whether a reply came. Replies that count for nothing can not keep it busy for ever.
bool listen(DiscoveryLookupBinding& proxy, d__ProbeMatchesType& matches, int idleRounds)
{
    AddressReader addresses;
    bool answered = false;
    int count = 0;
    int failures = 0;
    const auto end = Clock::now() + g_timing.searchInAll;
    while (failures < idleRounds && count < mostMatches && Clock::now() < end) {
        if (proxy.__dndl_Probe_Receive(nullptr, &matches) != SOAP_OK) {
            ++failures;
            continue;
        }
        answered = true;
        count += reportMatches(matches, addresses);
    }
    return answered;
}

} // namespace

void* ThreadSearch(void*)
{
    const bool registered = m_fSearchCallBack != nullptr;
    LoadDevice(defaultSeconds, defaultRounds);
    if (registered) { // else the callback may be that of a search that began meanwhile
        m_pSearchUser = nullptr;
        m_fSearchCallBack = nullptr;
    }
    return nullptr;
}

int LoadDevice(int recvTimeoutSeconds, int idleRounds)
{
    DiscoveryLookupBinding proxy(soap_new());
    if (proxy.context() == nullptr)
        return -1;
    setReceiveTimeout(*proxy.context(), isInRange(recvTimeoutSeconds) ? recvTimeoutSeconds : defaultSeconds);

    d__ProbeMatchesType matches{};
    if (sendProbe(proxy, matches) != SOAP_OK)
        return -1;
    return listen(proxy, matches, isInRange(idleRounds) ? idleRounds : defaultRounds) ? 0 : -1;
}

int reportMatches(const d__ProbeMatchesType& matches, AddressReader& addresses)
{
    int count = 0;
    const auto size = static_cast<std::size_t>(matches.__sizeProbeMatch);
    for (const d__ProbeMatchType& match : std::span(matches.ProbeMatch, size)) {
        if (match.XAddrs == nullptr)
            continue;
        SearchDeviceInfo device{};
        addresses.read(match.XAddrs, device);
        if (match.Scopes == nullptr) {
            std::printf("LoadDevice get (*probeMatch)->Scopes == NULL!!");
            continue;
        }
        if (match.Scopes->__item != nullptr)
            readScopes(match.Scopes->__item, device);
        ++count;
        const fSearchCallBack callback = m_fSearchCallBack;
        if (callback != nullptr && isOwnCamera(device))
            callback(&device, m_pSearchUser);
    }
    return count;
}

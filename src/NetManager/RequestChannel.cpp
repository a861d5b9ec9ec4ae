#include "NetManager/RequestChannel.h"

#include <atomic>
#include <string_view>

#include "Core/Timing.h"
#include "Log/KxLog.h"
#include "NetManager/Exchange.h"
#include "NetManager/Probe.h"
#include "NetManager/RequestText.h"

namespace
{

// The settings handler is given one byte less than the buffer holds.
constexpr std::size_t settingsBound = requestSize - 1;
constexpr std::size_t adminBound = requestSize;

// "403 Forbidden" is missing on purpose: callers that care look for it themselves.
constexpr Refusal refusals[] = {
    {"400 Bad Request", KX_ERROR_NETWORK},
    {"401 Unauthorized", KX_ERROR_UNAUTHORISED},
    {"404 Not Found", KX_ERROR_NOT_FOUND},
    {"502 Bad Gateway", KX_ERROR_BAD_GATEWAY},
};

std::atomic<int> nReadTimes{0};

void addLoginTarget(BoundedText& request, const UserInfo& session)
{
    request.add("GET /vb.htm?action=get.network.general&user=");
    request.addEscaped(session.user);
    request.add("&pwd=");
    request.addEscaped(session.password);
    request.add("&");
}

/// Writes the whole request, as far as it fits its bound; returns its length.
std::size_t composeRequest(char (&buffer)[requestSize], const UserInfo& session, std::string_view query,
                           bool admin)
{
    BoundedText request(buffer, admin ? adminBound : settingsBound);
    if (admin)
        request.add("GET /cgi-bin/admin/admin.cgi?");
    else if (query.empty())
        addLoginTarget(request, session);
    else if (query[0] == '&')
        request.add("GET /vb.htm?language=ie");
    else
        request.add("GET /vb.htm?");
    addQuery(request, query);
    addHeaders(request, session);
    return request.text().size();
}

} // namespace

int DoRequest(UserInfo* session, const char* query, char* reply, int replySize, signed char admin)
{
    if (session == nullptr || query == nullptr || reply == nullptr || replySize < 1)
        return -1;
    const auto address = probe(session->host, session->port);
    if (!address)
        return failWith(KX_ERROR_NETWORK);

    char request[requestSize];
    const std::size_t length = composeRequest(request, *session, query, admin != 0);
    return exchange(*address, {request, length}, reply, replySize, channelRules(nReadTimes));
}

ExchangeRules channelRules(std::atomic<int>& failedReads)
{
    return {.connectWait = g_timing.connect,
            .replyWait = g_timing.firstReply,
            .nothingReceived = KX_ERROR_NETWORK,
            .refusals = refusals,
            .failedReads = failedReads};
}

int IsHostConnect(const char* host, int port)
{
    if (host == nullptr) {
        KxOutputDebugInfo(1, "[KxLog]:Fun(IpcNet::IsHostConnect)->{sHost = NULL}");
        return 0;
    }
    return probe(host, port) ? 1 : 0;
}

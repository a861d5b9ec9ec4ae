#include "NetManager/Challenge.h"

#include <atomic>
#include <string_view>

#include "Core/Timing.h"
#include "NetManager/Exchange.h"
#include "NetManager/Probe.h"
#include "NetManager/RequestText.h"
#include "NetManager/Socket.h"

namespace
{

constexpr Refusal refusals[] = {
    {"400 Bad Request", KX_ERROR_NETWORK},     {"401 Unauthorized", KX_ERROR_UNAUTHORISED},
    {"403 Forbidden", KX_ERROR_FORBIDDEN},     {"404 Not Found", KX_ERROR_NOT_FOUND},
    {"502 Bad Gateway", KX_ERROR_BAD_GATEWAY},
};

ExchangeRules accountRules(std::atomic<int>& failedReads)
{
    return {.connectWait = g_timing.accountConnect,
            .replyWait = g_timing.accountReply,
            .nothingReceived = std::nullopt,
            .refusals = refusals,
            .failedReads = failedReads,
            .manner = Manner::NonBlocking};
}

} // namespace

int DoRequestForChallenge(UserInfo* session, const char* publicKey, char* reply, int replySize)
{
    static std::atomic<int> nReadTimes{0};
    if (session == nullptr || publicKey == nullptr || reply == nullptr || replySize < 1)
        return -1;
    const auto address = resolveIpv4(session->host, session->port);
    if (!address)
        return failWith(KX_ERROR_NETWORK);

    char buffer[requestSize];
    ExchangeRules rules = accountRules(nReadTimes);
    rules.goodReply = "OK";
    return exchange(*address, composeGet(buffer, "/challenge?PublicKeytool=", publicKey, *session), reply,
                    replySize, rules);
}

int DoRequestForPassword(UserInfo* session, const char* query, char* reply, int replySize)
{
    static std::atomic<int> nReadTimes{0};
    if (session == nullptr || query == nullptr || reply == nullptr || replySize < 1)
        return -1;
    const auto address = probe(session->host, session->port);
    if (!address)
        return failWith(KX_ERROR_NETWORK);

    char buffer[requestSize];
    return exchange(*address, composeGet(buffer, "/vb.htm?language=ie", query, *session), reply, replySize,
                    accountRules(nReadTimes));
}

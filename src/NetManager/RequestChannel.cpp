#include "NetManager/RequestChannel.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <sys/socket.h>

#include "Core/Timing.h"
#include "Log/KxLog.h"
#include "NetManager/Encoding.h"
#include "NetManager/Exchange.h"
#include "NetManager/Socket.h"

namespace
{

constexpr std::size_t requestSize = urlBufferSize;

// The settings handler is given one byte less than the buffer holds.
constexpr std::size_t settingsBound = requestSize - 1;
constexpr std::size_t adminBound = requestSize;

constexpr int lingerSeconds = 3;

// "403 Forbidden" is missing on purpose: callers that care look for it themselves.
constexpr Refusal refusals[] = {
    {"400 Bad Request", KX_ERROR_NETWORK},
    {"401 Unauthorized", KX_ERROR_UNAUTHORISED},
    {"404 Not Found", KX_ERROR_NOT_FOUND},
    {"502 Bad Gateway", KX_ERROR_BAD_GATEWAY},
};

std::atomic<int> nReadTimes{0};

struct FreeText
{
    void operator()(char* text) const { std::free(text); }
};

using OwnedText = std::unique_ptr<char, FreeText>;

OwnedText credentials(const UserInfo& session)
{
    char plain[256];
    std::snprintf(plain, sizeof plain, "%s:%s", session.user, session.password);
    return OwnedText(base64Encode(plain, static_cast<unsigned>(std::strlen(plain))));
}

/// Writes the whole request, as far as it fits its bound; returns its length, or 0 without memory.
std::size_t composeRequest(char (&request)[requestSize], const UserInfo& session, const char* query,
                           bool admin)
{
    const OwnedText basic = credentials(session);
    if (!basic)
        return 0;

    char loginPath[256];
    const char* path = query[0] == '&' ? "/vb.htm?language=ie" : "/vb.htm?";
    if (admin) {
        path = "/cgi-bin/admin/admin.cgi?";
    } else if (query[0] == '\0') { // the login request is escaped as a whole, path included
        std::snprintf(loginPath, sizeof loginPath, "/vb.htm?action=get.network.general&user=%s&pwd=%s&",
                      session.user, session.password);
        path = "";
        query = loginPath;
    }
    char escaped[urlBufferSize];
    encodeURL(query, escaped);
    const std::size_t bound = admin ? adminBound : settingsBound;
    const int length = std::snprintf(request, bound,
                                     "GET %s%s HTTP/1.1\r\nHost: %s:%d\r\nConnection: Keep-Alive\r\n"
                                     "Authorization: Basic %s\r\n\r\n",
                                     path, escaped, session.host, session.port, basic.get());
    return std::min(static_cast<std::size_t>(length), bound - 1);
}

} // namespace

int DoRequest(UserInfo* session, const char* query, char* reply, int replySize, signed char admin)
{
    if (session == nullptr || query == nullptr || reply == nullptr || replySize < 1)
        return -1;
    if (IsHostConnect(session->host, session->port) == 0)
        return failWith(KX_ERROR_NETWORK);

    char request[requestSize];
    const std::size_t length = composeRequest(request, *session, query, admin != 0);
    if (length == 0)
        return -1;
    const ExchangeRules rules{.connectWait = g_timing.connect,
                              .replyWait = g_timing.firstReply,
                              .nothingReceived = KX_ERROR_NETWORK,
                              .refusals = refusals,
                              .failedReads = nReadTimes};
    return exchange(*session, {request, length}, reply, replySize, rules);
}

int IsHostConnect(const char* host, int port)
{
    if (host == nullptr) {
        KxOutputDebugInfo(1, "[KxLog]:Fun(IpcNet::IsHostConnect)->{sHost = NULL}");
        return 0;
    }
    const FileDescriptor socket = makeTcpSocket();
    if (!socket) {
        KxOutputDebugInfo(1, "Create TCP Socket ERROR!");
        return 0;
    }
    if (!setLinger(socket, lingerSeconds))
        return 0;
    const auto address = resolveIpv4(host, port);
    if (!address || !setBlocking(socket, false))
        return 0;

    ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address);
    if (waitFor(socket, Readable | Writable | Exception, g_timing.probe) == Wait::TimedOut) {
        std::printf("[KxLog]:Fun(IpcNet::IsHostConnect)->{select} | err=%s\n", std::strerror(errno));
        return 0;
    }
    return 1;
}

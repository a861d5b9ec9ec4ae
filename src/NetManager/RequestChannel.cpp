#include "NetManager/RequestChannel.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>

#include <sys/socket.h>

#include "Core/Timing.h"
#include "Log/KxLog.h"
#include "NetManager/BoundedText.h"
#include "NetManager/Encoding.h"
#include "NetManager/Exchange.h"
#include "NetManager/Socket.h"
#include "ZrThread/ZrPrint.h"

namespace
{

constexpr std::size_t requestSize = urlBufferSize;

// The settings handler is given one byte less than the buffer holds.
constexpr std::size_t settingsBound = requestSize - 1;
constexpr std::size_t adminBound = requestSize;

constexpr std::size_t longestQuery = urlBufferSize; // a longer one is left out

constexpr int lingerSeconds = 3;

// "403 Forbidden" is missing on purpose: callers that care look for it themselves.
constexpr Refusal refusals[] = {
    {"400 Bad Request", KX_ERROR_NETWORK},
    {"401 Unauthorized", KX_ERROR_UNAUTHORISED},
    {"404 Not Found", KX_ERROR_NOT_FOUND},
    {"502 Bad Gateway", KX_ERROR_BAD_GATEWAY},
};

std::atomic<int> nReadTimes{0};

void addCredentials(BoundedText& request, const UserInfo& session)
{
    char plain[256];
    BoundedText both(plain, sizeof plain);
    both.add(session.user);
    both.add(":");
    both.add(session.password);
    char encoded[base64Size(sizeof plain)];
    request.add({encoded, encodeBase64(plain, both.text().size(), encoded)});
}

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
    else
        request.add(query[0] == '&' ? "GET /vb.htm?language=ie" : "GET /vb.htm?");
    if (query.size() <= longestQuery)
        request.addEscaped(query);
    request.add(" HTTP/1.1\r\nHost: ");
    request.add(session.host);
    request.add(":");
    request.add(session.port);
    request.add("\r\nConnection: Keep-Alive\r\nAuthorization: Basic ");
    addCredentials(request, session);
    request.add("\r\n\r\n");
    return request.text().size();
}

/// The host's address, if the host reacts. A name is resolved once, for the probe and for the request after it.
std::optional<sockaddr_in> probe(const char* host, int port)
{
    const FileDescriptor socket = makeTcpSocket(SOCK_NONBLOCK);
    if (!socket) {
        KxOutputDebugInfo(1, "Create TCP Socket ERROR!");
        return std::nullopt;
    }
    if (!setLinger(socket, lingerSeconds))
        return std::nullopt;
    const auto address = resolveIpv4(host, port);
    if (!address)
        return std::nullopt;
    ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address);
    if (waitFor(socket, Readable | Writable | Exception, g_timing.probe) != Wait::TimedOut)
        return address;
    zr_print("[KxLog]:Fun(IpcNet::IsHostConnect)->{select} | err=%s", std::strerror(errno));
    return std::nullopt;
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
    const ExchangeRules rules{.connectWait = g_timing.connect,
                              .replyWait = g_timing.firstReply,
                              .nothingReceived = KX_ERROR_NETWORK,
                              .refusals = refusals,
                              .failedReads = nReadTimes};
    return exchange(*address, {request, length}, reply, replySize, rules);
}

int IsHostConnect(const char* host, int port)
{
    if (host == nullptr) {
        KxOutputDebugInfo(1, "[KxLog]:Fun(IpcNet::IsHostConnect)->{sHost = NULL}");
        return 0;
    }
    return probe(host, port) ? 1 : 0;
}

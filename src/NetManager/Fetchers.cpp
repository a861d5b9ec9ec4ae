#include "NetManager/Fetchers.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "NetManager/Download.h"
#include "NetManager/Exchange.h"
#include "NetManager/LocalFile.h"
#include "NetManager/Probe.h"
#include "NetManager/ReplyFields.h"
#include "NetManager/RequestChannel.h"
#include "NetManager/RequestText.h"
#include "NetManager/TransferReply.h"
#include "NetManager/TransferWatch.h"

namespace
{

constexpr std::size_t localPathSize = 512;
constexpr int longestName = 1024;

bool begin(const UserInfo* session, const char* path, char* reply, int replySize)
{
    if (session == nullptr || path == nullptr || reply == nullptr || replySize < 1)
        return false;
    std::memset(reply, 0, static_cast<std::size_t>(replySize));
    return true;
}

/// The path of the file that a reply's header names; false when there is no such file. The header is terminated.
bool composePath(char (&buffer)[localPathSize], const char* directory, const char* header)
{
    char name[longestName + 1] = {};
    KxSscanf(header, "filename=\"", "\"\r\n", name, longestName);
    BoundedText path(buffer, sizeof buffer);
    path.add(directory);
    path.add("/");
    const std::size_t directoryEnd = path.text().size();
    path.add(baseName(name));
    buffer[path.text().size()] = '\0';
    return path.text().size() > directoryEnd; // a directory cut short would be another one
}

/// Writes what the buffer holds of a configuration; 0 or -1.
int saveConfig(const char* directory, char* reply, std::string_view received)
{
    const std::size_t headerSize = received.find("[param]");
    if (headerSize == received.npos || !holds(received.substr(0, headerSize), "200 OK"))
        return -1;
    char path[localPathSize];
    reply[headerSize] = '\0'; // only the header names the file
    const bool named = composePath(path, directory, reply);
    reply[headerSize] = '[';
    if (!named)
        return -1;

    OutputFile file(path);
    if (!file)
        return -1;
    const std::string_view body = received.substr(headerSize);
    std::printf("ssss ==> %lu, %s \n", 2 * body.size(), path);
    return file.write(body) && file.writeZeros(body.size()) && file.close() ? 0 : -1;
}

/// Moves a reply's body to the front of its buffer, with zeros behind it; its size.
std::size_t keepBody(char* reply, std::string_view received)
{
    constexpr std::string_view blankLine = "\r\n\r\n";
    const std::size_t headerEnd = received.find(blankLine);
    const std::string_view body =
        received.substr(headerEnd != received.npos ? headerEnd + blankLine.size() : received.size());
    std::memmove(reply, body.data(), body.size());
    std::memset(reply + body.size(), 0, received.size() - body.size());
    return body.size();
}

} // namespace

int DoExportConfig(UserInfo* session, const char* directory, char* reply, int replySize)
{
    static std::atomic<int> nReadTimes{0};
    if (!begin(session, directory, reply, replySize))
        return -1;
    const auto address = probe(session->host, session->port);
    if (!address)
        return failWith(KX_ERROR_NETWORK);

    TransferWatch watch(session->nUserId);
    const ExchangeRules rules = downloadRules(nReadTimes, watch);
    char request[requestSize];
    ReplyBuffer buffer(reply, replySize, &watch);
    const ReplyEnd end =
        converse(*address, composeGet(request, "/dataloader.cgi?dw=cfg", "", *session), buffer, rules);
    if (end == ReplyEnd::NotBegun || watch.stopped())
        return -1;
    if (buffer.empty() ||
        (!buffer.full() && isCutShort(buffer.kept().size(), toldLength(buffer.kept()), end)))
        return failWith(KX_ERROR_NETWORK);
    return saveConfig(directory, reply, buffer.kept());
}

int DoDownloadLprPicture(UserInfo* session, const char* path, char* reply, int replySize)
{
    static std::atomic<int> nReadTimes{0};
    if (!begin(session, path, reply, replySize))
        return -1;
    const auto address = probe(session->host, session->port);
    if (!address)
        return failWith(KX_ERROR_NETWORK);
    char request[requestSize];
    return exchange(*address, composeGet(request, "", path, *session), reply, replySize,
                    channelRules(nReadTimes));
}

int DoCustomUrlRequest(UserInfo* session, const char* path, char* reply, int replySize)
{
    static std::atomic<int> nReadTimes{0};
    if (!begin(session, path, reply, replySize))
        return -1;
    const auto address = probe(session->host, session->port);
    if (!address)
        return failWith(KX_ERROR_NETWORK);

    const ExchangeRules rules = channelRules(nReadTimes);
    char request[requestSize];
    ReplyBuffer buffer(reply, replySize);
    if (converse(*address, composeGet(request, "", path, *session), buffer, rules) == ReplyEnd::NotBegun)
        return -1;
    const std::size_t size = keepBody(reply, buffer.kept());
    if (size == 0)
        return failWith(KX_ERROR_NETWORK);
    return judge({reply, strnlen(reply, size)}, rules);
}

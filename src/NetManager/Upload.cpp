#include "NetManager/Upload.h"

#include <atomic>
#include <cstdio>
#include <string>

#include "NetManager/Connection.h"
#include "NetManager/Exchange.h"
#include "NetManager/LocalFile.h"
#include "NetManager/RequestText.h"
#include "NetManager/TransferReply.h"
#include "NetManager/TransferUrl.h"
#include "NetManager/TransferWatch.h"

namespace
{

constexpr std::size_t headSize = 4096; // the longest path and credentials leave more than half of it free
constexpr std::size_t partHeaderSize = 255; // a longer file name is cut, and the part's header with it
constexpr std::size_t answerSize = 4096;
constexpr std::size_t pieceSize = 16384;

constexpr std::string_view closing = "\r\n-----------------------------7dc3a91310a6e--\r\n";
constexpr std::string_view separator = closing.substr(2, closing.size() - 6);
constexpr std::string_view boundary = separator.substr(2);

std::string_view composePartHeader(char (&buffer)[partHeaderSize], const char* localPath)
{
    BoundedText header(buffer, sizeof buffer);
    header.add(separator);
    header.add("\r\nContent-Disposition: form-data; name=\"file\"; filename=\"");
    header.add(baseName(localPath));
    header.add("\"\r\nContent-Type: application/octet-stream\r\n\r\n");
    return header.text();
}

/// Without Host and Connection, and with a blank before the first line's end: the form in which cameras take uploads.
std::string_view composeHead(char (&buffer)[headSize], std::string_view path, std::string_view user,
                             std::string_view password, std::uint64_t contentLength)
{
    BoundedText head(buffer, sizeof buffer);
    head.add("POST ");
    head.add(path);
    head.add(" HTTP/1.1 \r\nAuthorization: Basic ");
    addCredentials(head, user, password);
    head.add("\r\nAccept: image/gif, image/jpeg, image/pjpeg, image/png, application/msword, "
             "application/vnd.ms-excel, application/vnd.ms-powerpoint, */*\r\n"
             "Accept-Language: zh-cn\r\n"
             "Content-Type: multipart/form-data; boundary=");
    head.add(boundary);
    head.add("\r\nAccept-Encoding: gzip, deflate\r\n"
             "Content-Length: ");
    head.add(std::to_string(contentLength));
    head.add("\r\n\r\n");
    return head.text();
}

bool sendFile(Connection& camera, const InputFile& file, TransferWatch& watch)
{
    char piece[pieceSize];
    if (!watch.advance())
        return false;
    for (std::uint64_t left = file.size(); left > 0;) {
        const ssize_t count = file.read(piece, std::min<std::uint64_t>(left, sizeof piece));
        if (count <= 0) // it can not be read, or has become shorter
            return false;
        const auto size = static_cast<std::size_t>(count);
        if (!camera.sendAll({piece, size}) || !watch.advance(size))
            return false;
        left -= size;
    }
    return true;
}

bool isAccepted(Connection& camera, const TransferWatch& watch)
{
    char buffer[answerSize + 1];
    ReplyBuffer answer(buffer, sizeof buffer);
    camera.receive(answer);
    if (watch.stopped() || !holds(answer.kept(), "200 OK"))
        return false;
    if (!holds(answer.kept(), "5 mismatch"))
        return true;
    std::printf("Md5 mismatch.\n");
    return false;
}

ExchangeRules uploadRules(std::atomic<int>& failedReads, TransferWatch& watch)
{
    return {.connectWait = g_timing.transferConnect,
            .replyWait = g_timing.uploadReply,
            .failedReads = failedReads,
            .manner = Manner::NonBlocking,
            .pieceWait = g_timing.uploadReply,
            .watch = &watch};
}

} // namespace

int UploadFile(const char* url, const char* localPath, const char* user, const char* password, long userId)
{
    static std::atomic<int> nReadTimes{0};
    char host[urlHostSize];
    int port = 0;
    const char* path = nullptr;
    if (localPath == nullptr || user == nullptr || password == nullptr || !parse_url(url, host, port, path))
        return 0;
    TransferWatch watch(userId);
    const ExchangeRules rules = uploadRules(nReadTimes, watch);
    const InputFile file(localPath);
    if (!file)
        return 0;
    watch.expect(file.size());
    const auto address = resolveIpv4(host, port);
    if (!address)
        return networkFailed(rules);
    Connection camera(rules);
    if (!camera.open(*address))
        return 0;

    char partBuffer[partHeaderSize];
    char headBuffer[headSize];
    const std::string_view part = composePartHeader(partBuffer, localPath);
    const std::string_view head =
        composeHead(headBuffer, path, user, password, part.size() + file.size() + closing.size());
    const bool accepted = camera.sendAll(head) && camera.sendAll(part) && sendFile(camera, file, watch) &&
                          camera.sendAll(closing) && isAccepted(camera, watch);
    if (!accepted)
        camera.abandon();
    return accepted;
}

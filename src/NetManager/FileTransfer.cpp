#include "NetManager/FileTransfer.h"

#include <initializer_list>
#include <string>
#include <string_view>

#include "Core/LastError.h"
#include "Log/KxLog.h"
#include "NetManager/BoundedText.h"
#include "NetManager/Download.h"
#include "NetManager/RequestChannel.h"
#include "NetManager/Upload.h"

namespace
{

constexpr std::size_t urlBound = 1023; // a longer URL is cut

using Transfer = int (*)(const char* url, const char* localPath, const char* user, const char* password,
                         long userId);
using Pieces = std::initializer_list<std::string_view>;

void composeUrl(char (&buffer)[urlBound], const UserInfo& session, Pieces target)
{
    BoundedText url(buffer, sizeof buffer);
    url.add("http://");
    url.add(session.host);
    url.add(":");
    url.add(session.port);
    for (const std::string_view piece : target)
        url.add(piece);
    buffer[url.text().size()] = '\0';
}

int run(Transfer transfer, UserInfo* session, const char* localPath, const char* reply, Pieces target,
        const char* unreachable = "Connect(%s:%d) Failed.")
{
    if (session == nullptr || localPath == nullptr || reply == nullptr)
        return -1;
    if (IsHostConnect(session->host, session->port) == 0) {
        KxOutputDebugInfo(1, unreachable);
        return failWith(KX_ERROR_NETWORK);
    }
    char url[urlBound];
    composeUrl(url, *session, target);
    return transfer(url, localPath, session->user, session->password, session->nUserId) != 0 ? 0 : -1;
}

bool hasNewEndpoint(int mode)
{
    return mode == 1 || mode == 2;
}

} // namespace

int DoFirmwareUpdate(UserInfo* session, const char* localPath, char* reply, int /*replySize*/)
{
    return run(UploadFile, session, localPath, reply, {"/update.cgi"},
               "upgrade IsHostConnect Connect(%s:%d) Failed.");
}

int DoUploadFileToSdCard(UserInfo* session, const char* localPath, char* reply, int /*replySize*/)
{
    return run(UploadFile, session, localPath, reply, {"/dataloader.cgi?up=sd"});
}

int DoUploadLprlist(UserInfo* session, const char* localPath, char* reply, int /*replySize*/)
{
    return run(UploadFile, session, localPath, reply, {"/dataloader.cgi?up=lprlist"});
}

int DoUploadOemFile(UserInfo* session, const char* localPath, char* reply, int /*replySize*/, int mode)
{
    return run(UploadFile, session, localPath, reply,
               {hasNewEndpoint(mode) ? "/dataloader.cgi?up=oem" : "/uploadoem.cgi"});
}

int DoUploadCfgFile(UserInfo* session, const char* localPath, char* reply, int /*replySize*/, int mode)
{
    return run(UploadFile, session, localPath, reply,
               {hasNewEndpoint(mode) ? "/dataloader.cgi?up=cfg" : "/uploadpara.cgi"});
}

int DoDownloadLogFile(UserInfo* session, const char* localPath, char* reply, int /*replySize*/)
{
    return run(DownloadFile, session, localPath, reply, {"/dataloader.cgi?dw=logdb"});
}

int DoDownloadConfigFile(UserInfo* session, const char* localPath, char* reply, int /*replySize*/)
{
    return run(DownloadFile, session, localPath, reply, {"/dataloader.cgi?dw=cfg"});
}

int DoDownloadCustomFile(UserInfo* session, const char* localPath, char* reply, int /*replySize*/,
                         unsigned kind, const char* name)
{
    if (name == nullptr)
        return -1;
    return run(DownloadFile, session, localPath, reply,
               {kind != 0 ? "/dataloader.cgi?dw=file&path=" : "/dataloader.cgi?dw=sd&file=", name});
}

int DoDownloadLprAllLog(UserInfo* session, const char* localPath, char* reply, int /*replySize*/, int type,
                        const char* start, const char* end)
{
    if (start == nullptr || end == nullptr)
        return -1;
    return run(DownloadFile, session, localPath, reply,
               {"/dataloader.cgi?dw=lprlogcsv&type=", std::to_string(type), "&time_start=", start,
                "&time_end=", end});
}

// The camera's own search of its recordings, and its playback. Times and lists are the camera's texts and are passed
// through.
#include <KxIpcSDK/KxStorage.h>

#include "KxIpcSDK/CameraCall.h"

namespace
{

constexpr std::size_t shortReply = 512;
constexpr std::size_t listReply = 20480;

using PlaybackReply = Reply<OkStyle, shortReply>;
using ListReply = Reply<OkStyle, listReply>;

/// Asks for a text and copies it into the application's room, as much as it holds.
int fetchText(CameraCall& call, const char* query, const char* key, char* output, std::uint32_t size)
{
    if (size == 0)
        return -1;
    const auto reply = call.get<ListReply>(query);
    return reply && reply.text(key, output, size) ? 0 : -1;
}

int fetchPosition(long userId, const char* query, const char* time, char* output, std::uint32_t size)
{
    CameraCall call(userId, {time, output});
    if (!call)
        return -1;
    Query positioned;
    positioned.add("%s=%s", query, time);
    return fetchText(call, positioned, "pbcurtimepos", output, size);
}

int control(long userId, const char* query)
{
    CameraCall call(userId);
    return call.get<PlaybackReply>(query).received() ? 0 : -1;
}

} // namespace

int Kx_Ipc_GetPlaybackPageCnt(long userId, const char* start, const char* end)
{
    CameraCall call(userId, {start, end});
    if (!call)
        return -1;
    Query query;
    query.add("PBStartTimePos=%s&PBEndTimePos=%s&PBFileTotalPage", start, end);
    const auto reply = call.get<PlaybackReply>(query);
    int pages = -1;
    if (reply)
        reply.number("pbfiletotalpage", pages);
    return pages;
}

int Kx_Ipc_GetPlaybackFilename(long userId, int page, const char* start, const char* end, char* output,
                               uint32_t size)
{
    CameraCall call(userId, {start, end, output});
    if (!call)
        return -1;
    Query query;
    query.add("PBStartTimePos=%s&PBEndTimePos=%s&PBFilePageIndex=%d", start, end, page);
    return fetchText(call, query, "pbfilepageindex", output, size);
}

int Kx_Ipc_GetPlaybackFileInfo(long userId, const char* time, char* output, uint32_t size)
{
    return fetchPosition(userId, "PBCurTimePos", time, output, size);
}

int Kx_Ipc_GetPlaybackHttpFileInfo(long userId, const char* time, char* output, uint32_t size)
{
    return fetchPosition(userId, "PBCurTimePosHttp", time, output, size);
}

int Kx_Ipc_GetPlaybackTime(long userId, char* output, uint32_t size)
{
    CameraCall call(userId, output);
    return fetchText(call, "PBCurTimePos", "pbcurtimepos", output, size);
}

int Kx_Ipc_StopPlayback(long userId)
{
    return control(userId, "PBState=-1");
}

int Kx_Ipc_PausePlayback(long userId)
{
    return control(userId, "PBState=0");
}

int Kx_Ipc_ResumePlayback(long userId)
{
    return control(userId, "PBState=1");
}

int Kx_Ipc_ChangePlaybackSpeed(long userId, int speed)
{
    CameraCall call(userId);
    Query query;
    query.add("PBSpeed=%d&PBState=2", speed);
    return call.set<PlaybackReply>(query);
}

// Main and sub stream of cameras with old firmware, which knows pictures by an index instead of their size.
#include <KxIpcSDK/KxVideo.h>

#include <algorithm>

#include "KxIpcSDK/settings/VideoStreams.h"

namespace
{

struct OldStream
{
    const StreamKeys& keys;
    const char* codecres;
    const char* rtspport;
    int minCodecres;
    int maxCodecres;
    int maxBitrate;
    const char* query;
};

constexpr int maxFramerate = 30;
constexpr int maxRtspPort = 65535;
constexpr int maxIpratio = 120;

constexpr OldStream oldStreams[] = {
    {streamKeys[MainStream], "maincodecres", "mainrtspport", 2, 9, 16384,
     "&paratest=enablesubstream&paratest=maincodec&paratest=maincodecres&paratest=mainrtspport"
     "&paratest=framerate1&paratest=bitrate1&paratest=ratecontrol1&paratest=ipratio1"
     "&paratest=exposurectrl&paratest=productmodel"},
    {streamKeys[SubStream], "subcodecres", "subrtspport", 0, 4, 1024,
     "&paratest=enablesubstream&paratest=subcodec&paratest=subcodecres&paratest=subrtspport"
     "&paratest=framerate2&paratest=bitrate2&paratest=ratecontrol2&paratest=ipratio2"
     "&paratest=exposurectrl&paratest=productmodel"},
};

bool readStream(CameraCall& call, VideoInfo& video)
{
    const OldStream& stream = oldStreams[video.stream];
    const OkReply reply = call.get(stream.query);
    if (!reply)
        return false;
    reply.number("enablesubstream", video.enablesubstream);
    reply.number(stream.codecres, video.codecres);
    reply.number(stream.rtspport, video.rtspport);
    readEncoder(reply, stream.keys, video);
    return true;
}

bool sendStream(CameraCall& call, const VideoInfo& video, ChipFamily family)
{
    const OldStream& stream = oldStreams[video.stream == SubStream ? SubStream : MainStream];
    VideoInfo sent = withinLimits(video, maxFramerate, stream.maxBitrate);
    sent.ipratio = std::min(sent.ipratio, maxIpratio);
    Query query;
    query.number(stream.keys.codec, sent.codec);
    query.number(stream.codecres, std::clamp(sent.codecres, stream.minCodecres, stream.maxCodecres));
    query.number(stream.rtspport, std::min(sent.rtspport, maxRtspPort));
    addRates(query, stream.keys, sent, family);
    query.number("enablesubstream", sent.enablesubstream);
    return call.set(query) == 0;
}

} // namespace

int Kx_Ipc_GetVideoConfig_ForOldVer(long userId, VideoInfo* videos, int count)
{
    CameraCall call(userId, videos);
    if (!call || count < 0)
        return -1;
    for (VideoInfo& video : std::span(videos, static_cast<std::size_t>(count)))
        if (video.stream <= SubStream && !readStream(call, video))
            return -1;
    return 0;
}

int Kx_Ipc_SetVideoConfig_ForOldVer(long userId, const VideoInfo* videos, int count)
{
    CameraCall call(userId, videos);
    if (!call || count < 0)
        return -1;
    const auto family = call.chipFamily();
    if (!family)
        return -1;
    for (const VideoInfo& video : std::span(videos, static_cast<std::size_t>(count))) {
        if (!sendStream(call, video, *family))
            return -1;
        waitForEncoder(g_timing.oldFirmwareEncoding);
    }
    return 0;
}

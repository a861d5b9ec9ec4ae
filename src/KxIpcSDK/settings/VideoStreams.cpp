#include "KxIpcSDK/settings/VideoStreams.h"

#include <algorithm>
#include <thread>

namespace
{

constexpr std::uint8_t lastCodec = 3;
constexpr int minBitrate = 16;

} // namespace

int withCount(int framerate, int more)
{
    return static_cast<int>(std::int64_t{framerate} + more);
}

VideoInfo withinLimits(VideoInfo video, int maxFramerate, int maxBitrate)
{
    video.codec = std::min(video.codec, lastCodec);
    video.framerate = std::clamp(video.framerate, 1, maxFramerate);
    video.bitrate = std::clamp(video.bitrate, minBitrate, maxBitrate);
    return video;
}

void addRates(Query& query, const StreamKeys& keys, const VideoInfo& video, ChipFamily family)
{
    const int otherMode = family == ChipFamily::Ti ? 2 : 0;
    query.number(keys.framerate, withCount(video.framerate, -1));
    query.number(keys.bitrate, video.bitrate);
    query.number(keys.ratecontrol, video.ratecontrol == 1 ? 1 : otherMode);
    query.number(keys.ipratio, video.ipratio);
}

void addSwitch(Query& query, const StreamKeys& keys, const VideoInfo& video)
{
    if (keys.enable != nullptr)
        query.number(keys.enable, video.*keys.enabled);
}

void waitForEncoder(Timing::Milliseconds time)
{
    std::this_thread::sleep_for(time);
}

// Video streams. A camera of the TI family takes the settings of all its streams in one plain query, any other camera
// those of each stream in a page of their own. Picture sizes go to the administrative handler in both dialects.
#include <KxIpcSDK/KxVideo.h>

#include <algorithm>
#include <cstring>

#include "KxIpcSDK/Key.h"
#include "KxIpcSDK/settings/VideoStreams.h"

namespace
{

using StreamsQuery = BoundedQuery<4096>;
using GeneralReply = Reply<QuotedStyle, 4096>;
using StreamsReply = Reply<OkStyle, 4096>;

constexpr std::uint8_t jpegCodec = 1;
constexpr int maxSubBitrateTi = 1024;
constexpr char setPictureSizes[] = "action=set.video.general";

/// Of the stream that a record is read for: a stream that cameras do not have reads as the main one.
const StreamKeys& keysToRead(const VideoInfo& video)
{
    return video.stream <= ThirdStream ? streamKeys[video.stream] : streamKeys[MainStream];
}

void readEventStream(const GeneralReply& reply, VideoInfo& video)
{
    reply.number("event_stream_enable", video.eventstreamenable);
    reply.number("event_stream_frame_rate", video.eventframerate);
    reply.number("event_stream_bit_rate", video.eventbitrate);
    reply.number("event_stream_iframe", video.eventiframe);
}

void readPictureSize(const GeneralReply& reply, VideoInfo& video)
{
    const int number = keysToRead(video).number;
    reply.number(Key("media_profile_resolution_width[%d]", number), video.width);
    reply.number(Key("media_profile_resolution_height[%d]", number), video.height);
}

StreamsQuery streamsQuery(std::span<const VideoInfo> videos)
{
    StreamsQuery query;
    for (const char* key : {"enablesubstream", "enablethirdstream", "mainrtspport"})
        query.ask(key);
    for (const VideoInfo& video : videos) {
        const StreamKeys& keys = keysToRead(video);
        for (const char* key : {keys.codec, keys.framerate, keys.bitrate, keys.ratecontrol, keys.ipratio,
                                keys.profile, keys.jpegquality, keys.smartstream, keys.smartlevel})
            query.ask(key);
        if (keys.number != MainStream)
            continue;
        for (const char* key : {"cputype", "ddrsize", "platformforweb"})
            query.ask(key);
    }
    return query;
}

void readStream(const StreamsReply& reply, VideoInfo& video)
{
    const StreamKeys& keys = keysToRead(video);
    reply.number("enablesubstream", video.enablesubstream);
    reply.number("enablethirdstream", video.enablethirdstream);
    reply.number("mainrtspport", video.rtspport);
    readEncoder(reply, keys, video);
    reply.number(keys.profile, video.profile);
    reply.number(keys.jpegquality, video.jpegquality);
    reply.number(keys.smartstream, video.smartstream);
    reply.number(keys.smartlevel, video.smartlevel);
}

void readChip(const StreamsReply& reply, const char* sensor, VideoInfo& video)
{
    char cpu[64] = {};
    int ddrsize = 0;
    reply.text("cputype", cpu);
    reply.number("ddrsize", ddrsize);
    video.limited3516a = ddrsize == 1 && std::strstr(cpu, "3516a") != nullptr ? 1 : 0;
    video.imx274on3516av200 =
        std::strstr(cpu, "3516av200") != nullptr && std::strstr(sensor, "imx274") != nullptr ? 1 : 0;
    reply.number("platformforweb", video.platformforweb);
}

int readVideo(CameraCall& call, std::span<VideoInfo> videos)
{
    const auto general = call.get<GeneralReply>("action=get.video.general", adminRequest);
    if (!general)
        return -1;
    char sensor[64] = {};
    general.text("system_deviceinformation_sensor", sensor);
    readEventStream(general, videos.front());
    for (VideoInfo& video : videos)
        readPictureSize(general, video);

    const auto streams = call.get<StreamsReply>(streamsQuery(videos));
    if (!streams)
        return -1;
    for (VideoInfo& video : videos) {
        readStream(streams, video);
        if (keysToRead(video).number == MainStream)
            readChip(streams, sensor, video);
    }
    return 0;
}

void addPictureSize(Query& query, const VideoInfo& video)
{
    query.add("&media_profile_resolution_width_%d=%d&media_profile_resolution_height_%d=%d", video.stream,
              video.width, video.stream, video.height);
}

/// The settings up to the codec's own one.
void addEncoder(Query& query, const StreamKeys& keys, const VideoInfo& video, ChipFamily family)
{
    query.number(keys.codec, video.codec);
    addRates(query, keys, video, family);
    addSwitch(query, keys, video);
}

VideoInfo toSend(const VideoInfo& video, int maxBitrate)
{
    VideoInfo sent = withinLimits(video, streamKeys[video.stream].maxFramerate, maxBitrate);
    sent.ipratio = std::clamp(sent.ipratio, 1, 240);
    return sent;
}

// The plain dialect.

/// A stream as the camera has it; what it does not tell is 0.
VideoInfo present(CameraCall& call, StreamNumber stream)
{
    VideoInfo video{};
    video.stream = stream;
    readVideo(call, {&video, 1});
    return video;
}

bool holds(std::span<const VideoInfo> videos, StreamNumber stream)
{
    return std::any_of(videos.begin(), videos.end(),
                       [stream](const VideoInfo& video) { return video.stream == stream; });
}

void addPlain(Query& query, const VideoInfo& video)
{
    const StreamKeys& keys = streamKeys[video.stream];
    const VideoInfo sent = toSend(video, video.stream == SubStream ? maxSubBitrateTi : keys.maxBitrate);
    addEncoder(query, keys, sent, ChipFamily::Ti);
    query.number(keys.profile, sent.profile);
}

/// The camera takes main and sub stream together: the one that the caller does not set stays as it is.
void addMissing(CameraCall& call, Query& query, std::span<const VideoInfo> videos, const VideoInfo& video)
{
    if (video.stream == MainStream && !holds(videos, SubStream)) {
        const VideoInfo sub = present(call, SubStream);
        query.number("subcodec", sub.codec);
        query.number("enablesubstream", sub.enablesubstream);
    }
    if (video.stream == SubStream && !holds(videos, MainStream))
        query.number("maincodec", present(call, MainStream).codec);
}

int setPlain(CameraCall& call, std::span<const VideoInfo> videos)
{
    Query pictureSizes;
    pictureSizes.add(setPictureSizes);
    Query settings;
    for (const VideoInfo& video : videos) {
        if (video.stream > SubStream) // there is no third stream
            continue;
        addPictureSize(pictureSizes, video);
        addPlain(settings, video);
        addMissing(call, settings, videos, video);
    }
    if (call.set(pictureSizes, adminRequest) != 0)
        return -1;
    waitForEncoder(g_timing.newResolution);
    return call.set(settings);
}

// The page dialect.

bool sendPictureSize(CameraCall& call, const VideoInfo& video)
{
    Query query;
    query.add(setPictureSizes);
    addPictureSize(query, video);
    return call.set(query, adminRequest) == 0;
}

bool sendEventStream(CameraCall& call, const VideoInfo& video)
{
    Query query;
    query.add("page=eventstream");
    query.number("enable", video.eventstreamenable);
    // One less than a get tells: cameras have always been sent it so.
    query.number("eventframerate", withCount(video.eventframerate, -1));
    query.number("eventbitrate", video.eventbitrate);
    query.number("eventiframe", video.eventiframe);
    return call.set(query) == 0;
}

bool sendStream(CameraCall& call, const VideoInfo& video, ChipFamily family)
{
    const StreamKeys& keys = streamKeys[video.stream];
    const VideoInfo sent = toSend(video, keys.maxBitrate);
    Query query;
    query.add("page=video.%d", keys.number);
    addEncoder(query, keys, sent, family);
    if (sent.codec == jpegCodec)
        query.number(keys.jpegquality, sent.jpegquality);
    else
        query.number(keys.profile, sent.profile);
    query.number(keys.smartstream, sent.smartstream);
    query.number(keys.smartlevel, sent.smartlevel);
    return call.set(query) == 0;
}

int setPages(CameraCall& call, std::span<const VideoInfo> videos, ChipFamily family)
{
    bool allSent = true;
    for (const VideoInfo& video : videos) {
        if (video.stream > ThirdStream)
            continue;
        if (!sendPictureSize(call, video))
            return -1;
        waitForEncoder(g_timing.newResolution);
        if (video.stream == MainStream)
            allSent &= sendEventStream(call, video);
        allSent &= sendStream(call, video, family);
        waitForEncoder(g_timing.*streamKeys[video.stream].restart);
    }
    return allSent ? 0 : -1;
}

} // namespace

int Kx_Ipc_GetVideoConfig(long userId, VideoInfo* videos, int count)
{
    CameraCall call(userId, videos);
    if (!call || count < 1)
        return -1;
    return readVideo(call, {videos, static_cast<std::size_t>(count)});
}

int Kx_Ipc_SetVideoConfig(long userId, const VideoInfo* videos, int count)
{
    CameraCall call(userId, videos);
    if (!call || count < 1)
        return -1;
    const auto family = call.chipFamily();
    if (!family)
        return -1;
    const std::span records(videos, static_cast<std::size_t>(count));
    return *family == ChipFamily::Ti ? setPlain(call, records) : setPages(call, records, *family);
}

// What a camera calls the settings of its video streams, and what the calls for new and for old firmware share.
#pragma once

#include <cstdint>
#include <span>

#include <KxIpcSDK/KxVideo.h>

#include "Core/Timing.h"
#include "KxIpcSDK/CameraCall.h"

enum StreamNumber : std::uint8_t
{
    MainStream = 0,
    SubStream = 1,
    ThirdStream = 2
};

/// A stream's keys, in the order in which a camera is asked for them, and its limits.
struct StreamKeys
{
    int number;
    const char* codec;
    const char* framerate;
    const char* bitrate;
    const char* ratecontrol;
    const char* ipratio;
    const char* profile;
    const char* jpegquality;
    const char* smartstream;
    const char* smartlevel;
    const char* enable; // null: the stream is always on
    std::uint8_t VideoInfo::*enabled;
    int maxFramerate;
    int maxBitrate;
    Timing::Milliseconds Timing::*restart; // the time that other settings take
};

inline constexpr StreamKeys streamKeys[] = {
    {MainStream, "maincodec", "framerate1", "bitrate1", "ratecontrol1", "ipratio1", "h264priprofile",
     "jpegpriquality", "smartstreamswitch", "smartstreamlevel", nullptr, nullptr, 120, 16384,
     &Timing::newEncoding},
    {SubStream, "subcodec", "framerate2", "bitrate2", "ratecontrol2", "ipratio2", "h264secprofile",
     "jpegsecquality", "subsmartstream", "subsmartlevel", "enablesubstream", &VideoInfo::enablesubstream, 120,
     2048, &Timing::newEncoding},
    {ThirdStream, "thirdcodec", "framerate3", "bitrate3", "ratecontrol3", "ipratio3", "h264thirdprofile",
     "jpegthirdquality", "thirdsmartstream", "thirdsmartlevel", "enablethirdstream",
     &VideoInfo::enablethirdstream, 30, 2048, &Timing::newThirdEncoding},
};

/// Frame rates are counted from 1 in records and from 0 in cameras; what a camera says may be any number.
int withCount(int framerate, int more);

/// A copy with codec, frame rate and bit rate as cameras take them.
VideoInfo withinLimits(VideoInfo video, int maxFramerate, int maxBitrate);

/// Reads what every firmware tells of a stream.
template <typename AnyReply>
void readEncoder(const AnyReply& reply, const StreamKeys& keys, VideoInfo& video)
{
    int number = 0;
    reply.number(keys.codec, video.codec);
    if (reply.number(keys.framerate, number))
        video.framerate = withCount(number, +1);
    reply.number(keys.bitrate, video.bitrate);
    if (reply.number(keys.ratecontrol, number))
        video.ratecontrol = number == 1 ? 1 : 0;
    reply.number(keys.ipratio, video.ipratio);
}

/// Frame rate, bit rate, rate control and I-frame interval.
void addRates(Query& query, const StreamKeys& keys, const VideoInfo& video, ChipFamily family);

/// The stream's switch, where it has one.
void addSwitch(Query& query, const StreamKeys& keys, const VideoInfo& video);

/// Gives the camera time to restart its encoder.
void waitForEncoder(Timing::Milliseconds time);

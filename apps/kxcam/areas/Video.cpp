// The video streams, an area each: a set writes one stream and leaves the others as they are.
#include <KxIpcSDK/KxVideo.h>

#include <array>
#include <cstring>
#include <limits>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field codec = ranged(field<&VideoInfo::codec>("codec", "codec code; 1: JPEG"), 0, 3);
constexpr Field width = field<&VideoInfo::width>("width", "picture width");
constexpr Field height = field<&VideoInfo::height>("height", "picture height");
constexpr Field ratecontrol =
    ranged(field<&VideoInfo::ratecontrol>("ratecontrol", "1: the camera's mode 1, 0: another"), 0, 1);
constexpr Field ipratio = ranged(field<&VideoInfo::ipratio>("ipratio", "I-frame interval"), 1, 240);
constexpr Field profile = field<&VideoInfo::profile>("profile", "H.264 profile code");
constexpr Field jpegquality = onSomeModels(field<&VideoInfo::jpegquality>("jpegquality", "JPEG quality"));
constexpr Field smartstream =
    onSomeModels(field<&VideoInfo::smartstream>("smartstream", "1: smart stream on"));
constexpr Field smartlevel = onSomeModels(field<&VideoInfo::smartlevel>("smartlevel", "smart stream level"));

constexpr Field framerate(int highest)
{
    return ranged(field<&VideoInfo::framerate>("framerate", "frames a second"), 1, highest);
}

constexpr Field bitrate(int highest)
{
    return ranged(field<&VideoInfo::bitrate>("bitrate", "bit rate"), 16, highest);
}

constexpr Field mainFields[] = {
    codec,
    width,
    height,
    framerate(120),
    bitrate(16384),
    ratecontrol,
    ipratio,
    profile,
    jpegquality,
    smartstream,
    smartlevel,
    onSomeModels(field<&VideoInfo::eventstreamenable>("eventstreamenable", "1: event stream on")),
    onSomeModels(
        field<&VideoInfo::eventframerate>("eventframerate", "event stream: frame rate, counted from 0")),
    onSomeModels(field<&VideoInfo::eventbitrate>("eventbitrate", "event stream: bit rate")),
    onSomeModels(field<&VideoInfo::eventiframe>("eventiframe", "event stream: I-frame interval")),
    readOnly(field<&VideoInfo::rtspport>("rtspport", "RTSP port; changed with `kxcam set ports`")),
    readOnly(field<&VideoInfo::limited3516a>("limited3516a", "1: 3516A chip with memory code 1")),
    readOnly(
        field<&VideoInfo::imx274on3516av200>("imx274on3516av200", "1: IMX274 sensor on a 3516AV200 chip")),
    readOnly(field<&VideoInfo::platformforweb>("platformforweb", "web platform code")),
};

/// Of the streams that can be switched off.
constexpr std::array<Field, 12> switchedFields(Field enable, int highestFramerate)
{
    return {enable,        codec,       width,   height,  framerate(highestFramerate),
            bitrate(2048), ratecontrol, ipratio, profile, jpegquality,
            smartstream,   smartlevel};
}

constexpr std::array subFields =
    switchedFields(field<&VideoInfo::enablesubstream>("enablesubstream", "1: the stream is on"), 120);
constexpr std::array thirdFields =
    switchedFields(field<&VideoInfo::enablethirdstream>("enablethirdstream", "1: the stream is on"), 30);

template <std::uint8_t Number>
int getStream(long userId, VideoInfo* video)
{
    video->stream = Number;
    return Kx_Ipc_GetVideoConfig(userId, video, 1);
}

// The chip flags are always told, also by what is no camera.
int getMain(long userId, VideoInfo* video)
{
    const VideoInfo before = *video;
    const int result = getStream<0>(userId, video);
    VideoInfo withoutFlags = *video;
    withoutFlags.limited3516a = before.limited3516a;
    withoutFlags.imx274on3516av200 = before.imx274on3516av200;
    if (std::memcmp(&before, &withoutFlags, sizeof before) == 0)
        *video = before;
    return result;
}

template <std::uint8_t Number>
int setStream(long userId, VideoInfo* video)
{
    VideoInfo sent = *video;
    sent.stream = Number;
    if (sent.eventframerate < std::numeric_limits<int>::max())
        ++sent.eventframerate; // goes out one less
    return Kx_Ipc_SetVideoConfig(userId, &sent, 1);
}

constexpr Quirks quirks{
    .whenNotKept =
        "profile is kept with other codecs than 1 (JPEG), jpegquality with codec=1. Cameras of the TI "
        "family have no JPEG quality, smart stream or event stream, and their sub stream takes a "
        "bitrate up to 1024.",
    .whySlow = "waiting: the camera restarts its encoder after each step, up to 7 seconds in all"};

constexpr Area mainArea = makeArea<getMain, setStream<0>>("video main", "", mainFields, quirks);
constexpr Area subArea = makeArea<getStream<1>, setStream<1>>("video sub", "", subFields, quirks);
constexpr Area thirdArea = makeArea<getStream<2>, setStream<2>>("video third", "", thirdFields, quirks);
constexpr Stream streams[] = {{"main", &mainArea}, {"sub", &subArea}, {"third", &thirdArea}};

} // namespace

extern constinit const Area videoArea = makeArea("video", "video streams (an encoder each)", streams);

} // namespace kxcam

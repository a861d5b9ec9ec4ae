// Settings are texts that anybody may have written; what comes of them is something that can be encoded.
#include "StreamPlan.h"

#include <algorithm>
#include <cstdlib>

namespace kxsim
{
namespace
{

int numberOf(const Settings& camera, std::string_view key, int least, int most)
{
    const long value = std::strtol(camera.text(key).c_str(), nullptr, 10);
    return static_cast<int>(std::clamp<long>(value, least, most));
}

/// The keys of one stream.
struct Keys
{
    std::string_view codec;
    std::string_view width;
    std::string_view height;
    std::string_view rate;
    std::string_view keyInterval;
    std::string_view bitrate;
    std::string_view quality;
};

constexpr Keys mainKeys{"maincodec",
                        "media_profile_resolution_width[0]",
                        "media_profile_resolution_height[0]",
                        "framerate1",
                        "ipratio1",
                        "bitrate1",
                        "jpegpriquality"};
constexpr Keys subKeys{"subcodec",
                       "media_profile_resolution_width[1]",
                       "media_profile_resolution_height[1]",
                       "framerate2",
                       "ipratio2",
                       "bitrate2",
                       "jpegsecquality"};

VideoPlan videoOf(const Settings& camera, const Keys& keys)
{
    constexpr int jpegCode = 1;
    constexpr int usualQuality = 80; // of cameras that have no such setting
    VideoPlan plan;
    plan.codec = camera.text(keys.codec) == std::to_string(jpegCode) ? VideoCodec::Mjpeg : VideoCodec::H264;
    plan.width = numberOf(camera, keys.width, 64, 3840) / 8 * 8;
    plan.height = numberOf(camera, keys.height, 64, 2160) / 2 * 2;
    plan.rate = numberOf(camera, keys.rate, 0, 119) + 1; // counted from 0
    plan.keyInterval = numberOf(camera, keys.keyInterval, 1, 240);
    plan.bitrate = numberOf(camera, keys.bitrate, 16, 16384);
    plan.quality = camera.find(keys.quality) ? numberOf(camera, keys.quality, 1, 100) : usualQuality;
    return plan;
}

SoundPlan soundOf(const Settings& camera)
{
    constexpr int g711Rate = 8000; // the codec has no other
    if (camera.text("audioenable") != "1")
        return {};
    if (camera.text("encoding") == "0")
        return {SoundCodec::G711, g711Rate};
    constexpr std::array rates{8000, 16000, 32000, 48000};
    const int wanted = numberOf(camera, "samplerate", rates.front(), rates.back());
    return {SoundCodec::Aac, *std::lower_bound(rates.begin(), rates.end(), wanted)};
}

} // namespace

ServicePlan planOf(const Settings& camera)
{
    const SoundPlan sound = soundOf(camera);
    ServicePlan plan;
    plan.port = numberOf(camera, "mainrtspport", 0, 65535);
    plan.mostClients = numberOf(camera, "maxconn", 0, 1000);
    plan.users = usersOf(camera);
    plan.streams[0] = {true, videoOf(camera, mainKeys), sound};
    plan.streams[1] = {camera.text("enablesubstream") != "0", videoOf(camera, subKeys), sound};
    return plan;
}

} // namespace kxsim

// What the camera's settings say of its streams.
#pragma once

#include "../Settings.h"
#include "../areas/Users.h"

#include <array>
#include <compare>
#include <string>
#include <vector>

namespace kxsim
{

enum class VideoCodec
{
    H264,
    Mjpeg
};

struct VideoPlan
{
    VideoCodec codec = VideoCodec::H264;
    int width = 0;
    int height = 0;
    int rate = 0;        ///< frames a second
    int keyInterval = 0; ///< a key frame every so many
    int bitrate = 0;     ///< kbit/s
    int quality = 0;     ///< of MJPEG

    auto operator<=>(const VideoPlan&) const = default;
};

enum class SoundCodec
{
    None,
    G711,
    Aac
};

struct SoundPlan
{
    SoundCodec codec = SoundCodec::None;
    int rate = 0; ///< samples a second

    bool operator==(const SoundPlan&) const = default;
};

struct StreamPlan
{
    bool enabled = true;
    VideoPlan video;
    SoundPlan sound;

    bool operator==(const StreamPlan&) const = default;
};

struct ServicePlan
{
    int port = 0;
    int mostClients = 0;
    std::vector<Credentials> users;
    std::array<StreamPlan, 2> streams; ///< main, sub

    bool operator==(const ServicePlan&) const = default;
};

ServicePlan planOf(const Settings& camera);

} // namespace kxsim

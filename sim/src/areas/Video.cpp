// The video area: encoder settings of the streams. Cameras other than TI have a third stream, an event stream, smart
// streams and JPEG, and take each stream's settings on a page of its own. Frame rates are counted from 0.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr auto ReadWrite = Access::ReadWrite;
constexpr auto ReadOnly = Access::ReadOnly;

constexpr std::array settings{
    // Main stream
    Setting{"maincodec", "0"},
    Setting{"maincodecres", "9"},
    Setting{"framerate1", "24"},
    Setting{"bitrate1", "4096"},
    Setting{"ratecontrol1", "1"},
    Setting{"ipratio1", "50"},
    Setting{"h264priprofile", "2"},
    Setting{"jpegpriquality", "80", ReadWrite, NotTi},
    Setting{"smartstreamswitch", "0", ReadWrite, NotTi},
    Setting{"smartstreamlevel", "5", ReadWrite, NotTi},
    Setting{"media_profile_resolution_width[0]", "1920"},
    Setting{"media_profile_resolution_height[0]", "1080"},

    // Sub stream
    Setting{"enablesubstream", "1"},
    Setting{"subcodec", "0"},
    Setting{"subcodecres", "2"},
    Setting{"framerate2", "14"},
    Setting{"bitrate2", "512"},
    Setting{"ratecontrol2", "1"},
    Setting{"ipratio2", "30"},
    Setting{"h264secprofile", "1"},
    Setting{"jpegsecquality", "60", ReadWrite, NotTi},
    Setting{"subsmartstream", "0", ReadWrite, NotTi},
    Setting{"subsmartlevel", "5", ReadWrite, NotTi},
    Setting{"media_profile_resolution_width[1]", "704"},
    Setting{"media_profile_resolution_height[1]", "576"},

    // Third stream
    Setting{"enablethirdstream", "0", ReadWrite, NotTi},
    Setting{"thirdcodec", "0", ReadWrite, NotTi},
    Setting{"framerate3", "9", ReadWrite, NotTi},
    Setting{"bitrate3", "256", ReadWrite, NotTi},
    Setting{"ratecontrol3", "0", ReadWrite, NotTi},
    Setting{"ipratio3", "20", ReadWrite, NotTi},
    Setting{"h264thirdprofile", "0", ReadWrite, NotTi},
    Setting{"jpegthirdquality", "50", ReadWrite, NotTi},
    Setting{"thirdsmartstream", "0", ReadWrite, NotTi},
    Setting{"thirdsmartlevel", "5", ReadWrite, NotTi},
    Setting{"media_profile_resolution_width[2]", "320", ReadWrite, NotTi},
    Setting{"media_profile_resolution_height[2]", "240", ReadWrite, NotTi},

    // Event stream
    Setting{"event_stream_enable", "0", ReadOnly, NotTi},
    Setting{"event_stream_frame_rate", "9", ReadOnly, NotTi},
    Setting{"event_stream_bit_rate", "1024", ReadOnly, NotTi},
    Setting{"event_stream_iframe", "25", ReadOnly, NotTi},

    // What the camera is made of; its processor stands in the system area
    Setting{"ddrsize", "1", ReadOnly, NotTi},
    Setting{"platformforweb", "3", ReadOnly, NotTi},
    Setting{"system_deviceinformation_sensor", "imx185", ReadOnly, Ti | Hisi},
    Setting{"system_deviceinformation_sensor", "imx274", ReadOnly, ModelA},
    Setting{"exposurectrl", "0"},
};

constexpr std::array setRules{
    SetRule{"enable", keepAs<"event_stream_enable">, NotTi, "eventstream"},
    SetRule{"eventframerate", keepAs<"event_stream_frame_rate">, NotTi, "eventstream"},
    SetRule{"eventbitrate", keepAs<"event_stream_bit_rate">, NotTi, "eventstream"},
    SetRule{"eventiframe", keepAs<"event_stream_iframe">, NotTi, "eventstream"},
};

constexpr std::array pages{
    Page{"eventstream", NotTi},
    Page{"video.0", NotTi},
    Page{"video.1", NotTi},
    Page{"video.2", NotTi},
};

std::vector<std::string> tellGeneral(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {
        "system_deviceinformation_sensor",
        "media_profile_resolution_width[0]",
        "media_profile_resolution_height[0]",
        "media_profile_resolution_width[1]",
        "media_profile_resolution_height[1]",
        "media_profile_resolution_width[2]",
        "media_profile_resolution_height[2]",
        "event_stream_enable",
        "event_stream_frame_rate",
        "event_stream_bit_rate",
        "event_stream_iframe",
    };
    return camera.lines(keys, quoted);
}

// "media_profile_resolution_width_0" is read back as "media_profile_resolution_width[0]".
std::vector<std::string> setGeneral(Settings& camera, const Parameters& parameters)
{
    std::vector<std::string> lines;
    for (const auto& [name, value] : parameters) {
        const std::size_t mark = name.rfind('_');
        if (!name.starts_with("media_profile_resolution_"))
            continue;
        if (camera.keep(name.substr(0, mark) + "[" + name.substr(mark + 1) + "]", value))
            lines.push_back("OK " + name);
    }
    return lines;
}

constexpr std::array actions{
    Action{adminPath, "get.video.general", tellGeneral},
    Action{adminPath, "set.video.general", setGeneral},
};

} // namespace

constinit const Area videoArea{
    .settings = settings, .setRules = setRules, .actions = actions, .pages = pages};

} // namespace kxsim

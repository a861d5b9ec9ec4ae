// What the camera can do. None of it can be changed.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr std::array settings{
    // Interfaces: memory card, audio, and alarm ports in either form; the page dialect's camera moves, too.
    Setting{"chipninterface", "15", Access::ReadOnly, Ti},
    Setting{"chipninterface", "51", Access::ReadOnly, NotTi},
    Setting{"nasmountstatu", "0", Access::ReadOnly},
    Setting{"sipenable", "1", Access::ReadOnly, NotTi},

    // The general list; audio stands in the system area. TI cameras do not analyse and do not say how.
    Setting{"system_io_support", "1", Access::ReadOnly},
    Setting{"system_fisheye_support", "0", Access::ReadOnly, Ti | Hisi},
    Setting{"system_fisheye_support", "1", Access::ReadOnly, ModelA},
    Setting{"system_vca_support", "0", Access::ReadOnly, Ti},
    Setting{"system_vca_support", "1", Access::ReadOnly, NotTi},
    Setting{"system_audio_alarm_support", "1", Access::ReadOnly},
    Setting{"system_led_support", "1", Access::ReadOnly},
    Setting{"system_led_group_support", "0", Access::ReadOnly},
    Setting{"system_ptz_motion_support", "0", Access::ReadOnly, Ti},
    Setting{"system_ptz_motion_support", "1", Access::ReadOnly, NotTi},
    Setting{"system_ptz_motion_max_zoom_times", "18", Access::ReadOnly, NotTi},
    Setting{"system_vca_type", "1", Access::ReadOnly, NotTi},
};

std::vector<std::string> generalModel(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {
        "system_io_support",        "system_audio_support",       "system_fisheye_support",
        "system_vca_support",       "system_audio_alarm_support", "system_led_support",
        "system_led_group_support", "system_ptz_motion_support",  "system_ptz_motion_max_zoom_times",
        "system_vca_type",
    };
    return camera.lines(keys);
}

constexpr std::array actions{
    Action{adminPath, "get.model.general", generalModel},
};

} // namespace

constinit const Area capabilitiesArea{.settings = settings, .actions = actions};

} // namespace kxsim

// The system area: what the camera is, who logs in, restart and the ways back to the factory's settings.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr std::array settings{
    Setting{"title", "camera"},
    Setting{"productmodel", "", Access::ReadOnly}, // the camera's own, filled in by Device
    Setting{"oemmodel", "", Access::ReadOnly},
    Setting{"softversion", "2.0.4", Access::ReadOnly},
    Setting{"deviceversion", "1.2", Access::ReadOnly},
    Setting{"sdkversion", "3.1", Access::ReadOnly},
    Setting{"cputype", "DM385", Access::ReadOnly, Ti},
    Setting{"cputype", "hi3516a", Access::ReadOnly, Hisi},
    Setting{"cputype", "hi3516av200", Access::ReadOnly, ModelA},

    // Features. TI cameras have one audio mode and say nothing of it.
    Setting{"system_audio_support", "1", Access::ReadOnly},
    Setting{"system_audio_support_mode", "2", Access::ReadOnly, NotTi},
    Setting{"system_lpr_support", "0", Access::ReadOnly, Ti},
    Setting{"system_lpr_support", "1", Access::ReadOnly, NotTi},
    Setting{"system_lpr_version", "0", Access::ReadOnly, Ti},
    Setting{"system_lpr_version", "3", Access::ReadOnly, NotTi},
    Setting{"system_alarm_output_support", "1", Access::ReadOnly},
};

// Of a login the camera makes a note in its journal, which no client can read here.
bool accept(Settings&)
{
    return true;
}

constexpr std::array commands{
    Command{"loginlog", accept},
    Command{"ipcamrestartcmd", accept, Effect::Restart},
    Command{"paradefaultcmd", accept, Effect::Reset},
    Command{"kxdefaultcmd", accept, Effect::Reset},
    Command{"keepipcmd", accept, Effect::ResetButAddress},
    Command{"keepusercmd", accept, Effect::ResetButUsers},
};

std::vector<std::string> information(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {"system_audio_support", "system_audio_support_mode",
                                         "system_lpr_support", "system_lpr_version",
                                         "system_alarm_output_support"};
    return camera.lines(keys);
}

constexpr std::array actions{
    Action{adminPath, "get.system.information", information},
};

} // namespace

constinit const Area systemArea{.settings = settings, .commands = commands, .actions = actions};

} // namespace kxsim

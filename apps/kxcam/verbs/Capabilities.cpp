// kxcam capabilities: what the camera can do, as far as it tells.
#include <cstring>

#include <KxIpcSDK/KxCapabilities.h>
#include <nlohmann/json.hpp>

#include "Abilities.h"
#include "Json.h"
#include "Reading.h"
#include "Table.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] =
    R"help(What a camera has no answer for shows as "(not told)", in JSON as null. The numbers
after yes and no are the camera's own codes, 0 for none.

Example:
  kxcam --host 192.168.1.20 capabilities --json

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)help";

constexpr Field fields[] = {
    field<&ModelGeneralInfo::system_io_support>("system_io_support", "alarm inputs and outputs"),
    field<&ModelGeneralInfo::system_audio_support>("system_audio_support", "audio"),
    field<&ModelGeneralInfo::system_fisheye_support>("system_fisheye_support", "fisheye lens"),
    field<&ModelGeneralInfo::system_vca_support>("system_vca_support", "video content analysis"),
    field<&ModelGeneralInfo::system_vca_type>("system_vca_type", "kind of video content analysis"),
    field<&ModelGeneralInfo::system_audio_alarm_support>("system_audio_alarm_support",
                                                         "alarm by sound level"),
    field<&ModelGeneralInfo::system_led_support>("system_led_support", "illumination"),
    field<&ModelGeneralInfo::system_led_group_support>("system_led_group_support", "illumination in groups"),
    field<&ModelGeneralInfo::system_ptz_motion_support>("system_ptz_motion_support",
                                                        "motorised pan, tilt and zoom"),
    field<&ModelGeneralInfo::system_ptz_motion_max_zoom_times>("system_ptz_motion_max_zoom_times",
                                                               "greatest zoom factor"),
};

/// The SDK gives the kind of analysis a default, also where the camera has no list at all.
int getGeneral(long userId, ModelGeneralInfo* info)
{
    ModelGeneralInfo answer = *info;
    if (Kx_Ipc_GetModelGeneral(userId, &answer) != 0)
        return -1;
    ModelGeneralInfo untold = *info;
    untold.system_vca_type = answer.system_vca_type;
    if (std::memcmp(&answer, &untold, sizeof answer) != 0)
        *info = answer;
    return 0;
}

constexpr Area general = makeArea<getGeneral, getGeneral>("capabilities", "", fields);

struct Capabilities
{
    std::vector<Ability> abilities;
    Record general;
};

/// Not every camera answers both; one that answers neither does not answer.
Capabilities ask(const CommandLine& line)
{
    const Session session(line.target);
    const auto list =
        readTold(general, [&](Record& record) { general.get(session.userId(), record.data()); });
    std::vector<Ability> abilities = askAbilities(session.userId());
    if (!list && !abilities.front().has)
        throw sdkFailure("asking " + line.target.address() + " for its capabilities");
    return {std::move(abilities), list.value_or(Record(general))};
}

void print(const Capabilities& capabilities, Console& console)
{
    const bool describe = console.isTerminal();
    std::vector<TableLine> lines;
    for (const auto& [key, name, has] : capabilities.abilities)
        lines.push_back({std::string(key),
                         !has   ? "(not told)"
                         : *has ? "yes"
                                : "no",
                         std::string(describe ? name : "")});
    for (TableLine& more : tableOf(general, capabilities.general, false, describe))
        lines.push_back(std::move(more));
    console.table(lines);
}

void printAsJson(const Capabilities& capabilities, Console& console)
{
    nlohmann::ordered_json object;
    for (const auto& [key, name, has] : capabilities.abilities)
        object[std::string(key)] = has ? nlohmann::ordered_json(*has) : nullptr;
    object.update(toJson(general, capabilities.general, false));
    printJson(object, console);
}

ExitCode show(const CommandLine& line, Console& console)
{
    (line.json ? printAsJson : print)(ask(line), console);
    return ExitCode::Ok;
}

} // namespace

void addCapabilities(const Verb& kxcam)
{
    kxcam.add("capabilities", "Show what the camera can do", footer).does(show);
}

} // namespace kxcam

// What moves a camera: its list of commands as a table, and the one call that sends them.
#include <KxIpcSDK/KxPtz.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <string_view>

#include "KxIpcSDK/CameraCall.h"

namespace
{

enum class Speed
{
    Sent,
    Never
};

/// What the camera is sent for the codes from this one up to that of the next row. "{view}", "{preset}" and "{name}" stand
/// for what the application gives. "%000" is the camera's own: it goes out as it is.
struct Command
{
    std::int64_t code;
    std::string_view fisheye;
    std::string_view otherwise;
    Speed speed = Speed::Sent;
    std::string_view ti = {}; // what a camera of the TI family is sent instead; empty: the same
};

constexpr std::int64_t leastCode = std::numeric_limits<std::int64_t>::min();

constexpr Command stopFrom(std::int64_t code)
{
    return {code, "&ipncptz=stop={view}", "&ipncptz=stop"};
}

constexpr Command clearPreset(std::int64_t code)
{
    return {code, "&ipncptz=clearfishpreset={view}:{preset}", "&ipncptz=clearpreset={preset}"};
}

/// A command that a fisheye view is sent just so.
constexpr Command same(std::int64_t code, std::string_view fragment, Speed speed = Speed::Sent,
                       std::string_view ti = {})
{
    return {code, fragment, fragment, speed, ti};
}

constexpr Command patrol(std::int64_t code)
{
    return same(code, "&ipncptz=enablepatrol", Speed::Never);
}

constexpr Command iris(std::int64_t code, std::string_view fragment, std::string_view ti)
{
    return same(code, fragment, Speed::Sent, ti);
}

constexpr Command commands[] = {
    stopFrom(leastCode),
    {KX_PTZ_UP, "&ipncptz=fishptzup={view}:0", "&ipncptz=up%000"},
    {KX_PTZ_DOWN, "&ipncptz=fishptzdown={view}:0", "&ipncptz=down%000"},
    {KX_PTZ_LEFT, "&ipncptz=fishptzleft={view}:0", "&ipncptz=left%000"},
    {KX_PTZ_RIGHT, "&ipncptz=fishptzright={view}:0", "&ipncptz=right%000"},
    {KX_PTZ_UP_LEFT, "&ipncptz=fishptztopleft={view}:0", "&ipncptz=upleft%000"},
    {KX_PTZ_UP_RIGHT, "&ipncptz=fishptztopright={view}:0", "&ipncptz=upright%000"},
    {KX_PTZ_DOWN_LEFT, "&ipncptz=fishptzleftdown={view}:0", "&ipncptz=downleft%000"},
    {KX_PTZ_DOWN_RIGHT, "&ipncptz=fishptzrightdown={view}:0", "&ipncptz=downright%000"},
    {KX_PTZ_AUTO_SCAN, "&ipncptz=fishAuto={view}:0", "&ipncptz=auto%000"},
    stopFrom(KX_PTZ_STOP),
    {KX_PTZ_ZOOM_IN, "&ipncptz=zoomin={view}:0", "&ipncptz=zoomin%000"},
    {KX_PTZ_ZOOM_OUT, "&ipncptz=zoomout={view}:0", "&ipncptz=zoomout%000"},
    same(KX_PTZ_FOCUS_NEAR, "&ipncptz=focusin%000", Speed::Never),
    same(KX_PTZ_FOCUS_FAR, "&ipncptz=focusout%000", Speed::Never),
    iris(KX_PTZ_IRIS_OPEN, "&irisstep=4&irismanualstep=1&ipncptz=irisin%000", "&ipncptz=irisin%000"),
    iris(KX_PTZ_IRIS_CLOSE, "&irisstep=4&irismanualstep=0&ipncptz=irisout%000", "&ipncptz=irisout%000"),
    same(KX_PTZ_LIGHT_OFF, "&ipncptz=lightoff", Speed::Never),
    same(KX_PTZ_LIGHT_ON, "&ipncptz=lighton", Speed::Never),
    same(KX_PTZ_WIPER_OFF, "&brushoff"),
    same(KX_PTZ_WIPER_ON, "&brushon"),
    same(KX_PTZ_AUTO_FOCUS_ONCE, "&ipncptz=autofocus%000"),
    {KX_PTZ_SET_PRESET, "&ipncptz=setfishpreset={view}:{preset}:{name}",
     "&ipncptz=setpreset={preset}:{name}"},
    {KX_PTZ_GO_TO_PRESET, "&ipncptz=gotofishpreset={view}:{preset}", "&ipncptz=gotopreset={preset}"},
    clearPreset(KX_PTZ_CLEAR_PRESET),
    patrol(KX_PTZ_PATROL),
    stopFrom(25),
    clearPreset(49),
    same(KX_PTZ_RESET_FOCUS, "&ipncptz=resetfocus"),
    same(KX_PTZ_AUTO_FOCUS, "&ipncptz=autofocus"),
    same(KX_PTZ_IRIS_MODE_1, "&irismode=1"),
    same(KX_PTZ_IRIS_MODE_0, "&irismode=0"),
    patrol(54),
    same(KX_PTZ_SPEED_ONLY, ""),
    stopFrom(56),
    clearPreset(102),
    stopFrom(103),
};

// In ascending order, and every code has its row.
static_assert(std::ranges::is_sorted(commands, std::less_equal{}, &Command::code) &&
              commands[0].code == leastCode);

constexpr const Command& commandFor(std::int64_t code)
{
    return *std::prev(std::ranges::upper_bound(commands, code, {}, &Command::code));
}

constexpr std::string_view nameMark = "{name}";

/// Adds a fragment with the application's arguments in their places.
void addFragment(Query& query, std::string_view fragment, int view, int preset, const char* name)
{
    while (!fragment.empty()) {
        const std::string_view plain = fragment.substr(0, fragment.find('{'));
        query.add("%.*s", static_cast<int>(plain.size()), plain.data());
        fragment.remove_prefix(plain.size());
        if (fragment.starts_with("{view}"))
            query.add("%d", view);
        else if (fragment.starts_with("{preset}"))
            query.add("%d", preset);
        else if (fragment.starts_with(nameMark))
            query.add("%s", name);
        fragment = fragment.substr(fragment.empty() ? 0 : fragment.find('}') + 1);
    }
}

} // namespace

int Kx_Ipc_PTZControl(long userId, int64_t code, int preset, const char* name, uint8_t fisheye, int view,
                      int64_t speed)
{
    const Command& command = commandFor(code);
    std::string_view fragment = fisheye != 0 ? command.fisheye : command.otherwise;
    const bool isNamed = fragment.find(nameMark) != std::string_view::npos;
    CameraCall call(userId, isNamed ? name : "");
    if (!command.ti.empty()) {
        const auto family = call.chipFamily();
        if (!family)
            return -1;
        if (*family == ChipFamily::Ti)
            fragment = command.ti;
    }
    if (!call)
        return -1;
    constexpr std::int64_t noSpeed = -1;
    Query query;
    if (speed != noSpeed && command.speed == Speed::Sent)
        query.number("ptzspeed", static_cast<int>(speed));
    addFragment(query, fragment, view, preset, name);
    return call.set<CommandReply>(query);
}

// The mechanics, the lens and the lights: what an order "ipncptz=up%000" makes of the camera.
//
// A movement takes a step of its speed at once and is then said to go on until it is stopped, so that nobody has to wait
// to see what became of it. A camera with a fisheye lens moves each of its views by itself.
#include "Area.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace kxsim
{
namespace
{

constexpr auto Hidden = Access::Hidden;
constexpr auto ReadOnly = Access::ReadOnly;

constexpr std::string_view mechanics = "ptz"; // what keys of a moving part begin with; of a view: "fish_0"
constexpr int views = 5;
constexpr int farthest = 100; // on every axis; pan and tilt go so far either way
constexpr std::string_view patrolling = "patrol";

constexpr std::array settings{
    Setting{"ptzprotocol", "0"},
    Setting{"ptzbaudrate", "2"}, // how often 2400 is doubled
    Setting{"ptzspeed", "5"},
    Setting{"zoompos", "0", ReadOnly},
    Setting{"lightstatus", "0", ReadOnly},
    Setting{"irismode", "0"},
    Setting{"irisstep", "1", Access::ReadWrite, NotTi},
    Setting{"irismanualstep", "0", Access::ReadWrite, NotTi}, // 1: the step opens
    Setting{"white_led_status", "0", ReadOnly},
    Setting{"white_led_alarm", "1", ReadOnly},
    Setting{"white_led_number", "2", ReadOnly},
    Setting{"white_led_manual", "0", ReadOnly},

    Setting{"ptz.pan", "0", Hidden},
    Setting{"ptz.tilt", "0", Hidden},
    Setting{"ptz.motion", "", Hidden}, // the order that is followed just now
    Setting{"ptz.focus", "50", Hidden},
    Setting{"ptz.iris", "50", Hidden},
    Setting{"ptz.brush", "0", Hidden},
};

/// What a client orders: of whom, what, and with which arguments.
struct Order
{
    std::string part;
    std::string word;
    std::string arguments;
};

using Follow = bool (*)(Settings& camera, const Order& order);

std::pair<std::string, std::string> split(const std::string& text, char mark)
{
    const std::size_t at = text.find(mark);
    return {text.substr(0, at), at == std::string::npos ? "" : text.substr(at + 1)};
}

int number(const std::string& text)
{
    return std::atoi(text.c_str());
}

std::string keyOf(const Order& order, std::string_view name)
{
    return order.part + "." + std::string(name);
}

std::string zoomKey(const Order& order)
{
    return order.part == mechanics ? "zoompos" : keyOf(order, "zoom");
}

void move(Settings& camera, const std::string& key, int by, int lowest = 0)
{
    camera.put(key, std::to_string(std::clamp(number(camera.text(key)) + by, lowest, farthest)));
}

int speed(const Settings& camera)
{
    return std::clamp(number(camera.text("ptzspeed")), 1, farthest);
}

template <int Pan, int Tilt, int Zoom = 0>
bool go(Settings& camera, const Order& order)
{
    move(camera, keyOf(order, "pan"), Pan * speed(camera), -farthest);
    move(camera, keyOf(order, "tilt"), Tilt * speed(camera), -farthest);
    move(camera, zoomKey(order), Zoom * speed(camera));
    camera.put(keyOf(order, "motion"), order.word);
    return true;
}

bool stop(Settings& camera, const Order& order)
{
    camera.put(keyOf(order, "motion"), "");
    return true;
}

bool zoomTo(Settings& camera, const Order& order)
{
    camera.put("zoompos", std::to_string(std::clamp(number(order.arguments), 0, farthest)));
    return true;
}

// A preset is kept as "pan:tilt:zoom:name".
std::string presetKey(const Order& order)
{
    return keyOf(order, "preset." + split(order.arguments, ':').first);
}

bool setPreset(Settings& camera, const Order& order)
{
    std::string kept;
    for (const std::string& key : {keyOf(order, "pan"), keyOf(order, "tilt"), zoomKey(order)})
        kept += std::to_string(number(camera.text(key))) + ":";
    camera.put(presetKey(order), kept + split(order.arguments, ':').second);
    return true;
}

bool lookAt(Settings& camera, const Order& order, const std::string& presetKey)
{
    auto rest = camera.text(presetKey);
    if (rest.empty())
        return false;
    for (const std::string& key : {keyOf(order, "pan"), keyOf(order, "tilt"), zoomKey(order)}) {
        const auto [value, others] = split(rest, ':');
        camera.put(key, value);
        rest = others;
    }
    return stop(camera, order);
}

bool goToPreset(Settings& camera, const Order& order)
{
    return lookAt(camera, order, presetKey(order));
}

bool clearPreset(Settings& camera, const Order& order)
{
    const std::string key = presetKey(order);
    const bool known = camera.find(key).has_value();
    camera.remove(key);
    return known;
}

// Begins at the first preset; without one there is nowhere to go.
bool patrol(Settings& camera, const Order& order)
{
    const auto first = camera.all().lower_bound(keyOf(order, "preset."));
    if (first == camera.all().end() || !first->first.starts_with(keyOf(order, "preset.")))
        return false;
    lookAt(camera, order, std::string(first->first));
    camera.put(keyOf(order, "motion"), patrolling);
    return true;
}

template <int By>
bool focus(Settings& camera, const Order& order)
{
    move(camera, "ptz.focus", By);
    camera.put("ptz.motion", order.word);
    return true;
}

bool focusItself(Settings& camera, const Order&)
{
    camera.put("ptz.focus", "50");
    return true;
}

// Cameras other than TI are told how far and which way, and do not step the other way.
template <int Direction>
bool stepIris(Settings& camera, const Order&)
{
    const auto opens = camera.find("irismanualstep");
    if (opens && (*opens == "1") != (Direction > 0))
        return false;
    const int step = opens ? std::clamp(number(camera.text("irisstep")), 0, farthest) : 1;
    move(camera, "ptz.iris", Direction * step);
    return true;
}

template <KeyName Key, bool On>
bool switchTo(Settings& camera, const Order&)
{
    return camera.keep(Key.text, On ? "1" : "0");
}

/// The words of an order, for the mechanics and for a fisheye view. An order for a view has the view's number in front of
/// its arguments.
struct Row
{
    std::string_view word;
    std::string_view viewWord; ///< empty: not for views
    Follow follow;
};

constexpr Row rows[] = {
    {"up", "fishptzup", go<0, 1>},
    {"down", "fishptzdown", go<0, -1>},
    {"left", "fishptzleft", go<-1, 0>},
    {"right", "fishptzright", go<1, 0>},
    {"upleft", "fishptztopleft", go<-1, 1>},
    {"upright", "fishptztopright", go<1, 1>},
    {"downleft", "fishptzleftdown", go<-1, -1>},
    {"downright", "fishptzrightdown", go<1, -1>},
    {"auto", "fishAuto", go<1, 0>},
    {"zoomin", "zoomin", go<0, 0, 1>},
    {"zoomout", "zoomout", go<0, 0, -1>},
    {"stop", "stop", stop},
    {"zoompos", "", zoomTo},
    {"setpreset", "setfishpreset", setPreset},
    {"gotopreset", "gotofishpreset", goToPreset},
    {"clearpreset", "clearfishpreset", clearPreset},
    {"enablepatrol", "", patrol},
    {"focusin", "", focus<-1>},
    {"focusout", "", focus<1>},
    {"autofocus", "", focusItself},
    {"resetfocus", "", focusItself},
    {"irisin", "", stepIris<1>},
    {"irisout", "", stepIris<-1>},
    {"lighton", "", switchTo<"lightstatus", true>},
    {"lightoff", "", switchTo<"lightstatus", false>},
};

/// The order as it is for one of the views; nothing when the camera does not have that view.
std::optional<Order> forView(const Settings& camera, const Order& order)
{
    const auto [view, arguments] = split(order.arguments, ':');
    if (camera.text("system_fisheye_support") == "0" || view.empty() || number(view) < 0 ||
        number(view) >= views)
        return std::nullopt;
    return Order{"fish_" + std::to_string(number(view)), order.word, arguments};
}

// A word with arguments is for a view where both words are the same. Clients end some words with a zero byte and
// more behind it.
bool obey(Settings& camera, const std::string& value)
{
    const auto [word, arguments] = split(value.substr(0, value.find('\0')), '=');
    const Order order{std::string(mechanics), word, arguments};
    for (const Row& row : rows) {
        const bool isOfView = word == row.viewWord && (word != row.word || !arguments.empty());
        if (!isOfView && word == row.word)
            return row.follow(camera, order);
        if (!isOfView)
            continue;
        const auto ofView = forView(camera, order);
        return ofView && row.follow(camera, *ofView);
    }
    return false;
}

constexpr std::array setRules{SetRule{"ipncptz", obey}};

template <bool On>
bool brush(Settings& camera)
{
    return camera.keep("ptz.brush", On ? "1" : "0");
}

constexpr std::array commands{
    Command{"brushon", brush<true>},
    Command{"brushoff", brush<false>},
};

// Digital zoom, which these cameras do not have, and the zoom ratio that follows from the position.
constexpr std::array inquiries{
    Inquiry{"getdigitposzmstate",
            [](Settings&, const std::string&) -> std::optional<std::string> {
                return "OK getdigitposzmstate=0";
            }},
    Inquiry{"getzoomnumber",
            [](Settings& camera, const std::string&) -> std::optional<std::string> {
                const int most = std::max(number(camera.text("system_ptz_motion_max_zoom_times")), 1);
                const int ratio = 1 + (most - 1) * number(camera.text("zoompos")) / farthest;
                return "OK getzoomnumber=" + std::to_string(ratio);
            }},
};

int runStatus(const Settings& camera, const std::string& part)
{
    const std::string motion = camera.text(part + ".motion");
    return motion.empty() ? 0 : motion == patrolling ? 2 : 1;
}

std::vector<std::string> tellRunStatus(Settings& camera, const Parameters&)
{
    std::vector<std::string> lines{"[PTZ_RUN_STATUS]"};
    lines.push_back("ptz_run_status=" + std::to_string(runStatus(camera, std::string(mechanics))));
    for (int view = 0; view < views; ++view) {
        const std::string part = "fish_" + std::to_string(view);
        lines.push_back(part + "_ptz_run_status=" + std::to_string(runStatus(camera, part)));
    }
    return lines;
}

std::vector<std::string> tellLens(Settings& camera, const Parameters&)
{
    return {plain("imaging_settings_lens_iris_mode", camera.text("irismode"))};
}

std::vector<std::string> tellWhiteLed(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {"white_led_status"};
    return camera.lines(keys);
}

std::vector<std::string> tellWhiteLedParameters(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {"white_led_alarm", "white_led_number", "white_led_manual"};
    return camera.lines(keys);
}

std::vector<std::string> setWhiteLed(Settings& camera, const Parameters& parameters)
{
    const auto status = parameters.find("white_led_status");
    if (status == parameters.end() || !camera.keep("white_led_status", status->second))
        return {"NG"};
    return {"OK white_led_status"};
}

constexpr std::array actions{
    Action{adminPath, "get.ptz.runstatus", tellRunStatus},
    Action{adminPath, "get.camera.lens", tellLens},
    Action{adminPath, "get.whiteled.status", tellWhiteLed},
    Action{adminPath, "get.whiteled.parameter", tellWhiteLedParameters},
    Action{adminPath, "set.whiteled.status", setWhiteLed},
};

} // namespace

constinit const Area ptzArea{.settings = settings,
                             .setRules = setRules,
                             .commands = commands,
                             .actions = actions,
                             .inquiries = inquiries};

} // namespace kxsim

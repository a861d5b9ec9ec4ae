// Tracking: by itself, with a schedule, and of what a client points at. There is always something to track.
#include "Area.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kxsim
{
namespace
{

constexpr std::string_view never = "00:00:00:00;00:00:00:00;00:00:00:00;";

constexpr std::string_view region =
    "manual_tracking_region"; // left, top, right, bottom in parts of the picture

constexpr Setting told(std::string_view key, std::string_view initial)
{
    return {key, initial, Access::ReadOnly}; // set by the action alone
}

constexpr std::array settings{
    told("auto_tracking_enable", "0"),
    told("auto_tracking_show", "0"),
    told("auto_tracking_sensitivity", "5"),
    told("auto_tracking_max_time", "60"),
    told("manual_tracking", "0"),
    told("auto_tracking_zoom_mode", "0"),
    told("auto_tracking_zoom_number", "4"),
    told("auto_tracking_schedule_0", never),
    told("auto_tracking_schedule_1", "08:00:18:30;00:00:00:00;00:00:00:00;"),
    told("auto_tracking_schedule_2", never),
    told("auto_tracking_schedule_3", never),
    told("auto_tracking_schedule_4", never),
    told("auto_tracking_schedule_5", never),
    told("auto_tracking_schedule_6", never),
    told(region, ""),
};

std::string inQuotes(std::string_view key, std::string_view value)
{
    return std::string(key).append("='").append(value).append("'");
}

std::vector<std::string> tellTracking(Settings& camera, const Parameters&)
{
    std::vector<std::string> lines;
    for (const Setting& setting : settings) {
        const auto value = camera.find(setting.key);
        const bool isDay = setting.key.starts_with("auto_tracking_schedule_");
        if (value && setting.key != region)
            lines.push_back((isDay ? inQuotes : plain)(setting.key, *value));
    }
    return lines;
}

std::vector<std::string> setTracking(Settings& camera, const Parameters& parameters)
{
    std::vector<std::string> lines;
    for (const Setting& setting : settings) {
        const auto given = parameters.find(setting.key);
        if (given != parameters.end() && camera.keep(setting.key, given->second))
            lines.push_back("OK " + std::string(setting.key));
    }
    if (parameters.contains(region))
        camera.put("manual_tracking", "1");
    return lines;
}

/// An object, in parts of the picture.
struct Object
{
    int type; ///< 1: a client has pointed at it
    float left;
    float top;
    float right;
    float bottom;
};

std::vector<Object> objects(const Settings& camera)
{
    std::vector<Object> found;
    if (camera.text("auto_tracking_enable") == "1")
        found = {{0, 0.25F, 0.5F, 0.375F, 0.75F}, {0, 0.5F, 0.25F, 0.625F, 0.5F}};
    Object pointedAt{1, 0, 0, 0, 0};
    if (camera.text("manual_tracking") == "1" &&
        std::sscanf(camera.text(region).c_str(), "%f:%f:%f:%f", &pointedAt.left, &pointedAt.top,
                    &pointedAt.right, &pointedAt.bottom) == 4)
        found.push_back(pointedAt);
    return found;
}

std::vector<std::string> tellPoints(Settings& camera, const Parameters&)
{
    const std::string width = camera.text("media_profile_resolution_width[0]");
    const std::string height = camera.text("media_profile_resolution_height[0]");
    const std::vector<Object> found = objects(camera);
    std::vector<std::string> lines{plain("track_point_num", std::to_string(found.size())),
                                   plain("media_profile_resolution_width", width),
                                   plain("media_profile_resolution_height", height)};
    for (std::size_t i = 0; i < found.size(); ++i) {
        const auto add = [&](const char* key, float value, const std::string& full) {
            const long pixels = std::lround(value * std::strtof(full.c_str(), nullptr));
            lines.push_back(std::string(key) + "_" + std::to_string(i) + "=" + std::to_string(pixels));
        };
        add("id", static_cast<float>(i + 1), "1");
        add("type", static_cast<float>(found[i].type), "1");
        add("startX", found[i].left, width);
        add("startY", found[i].top, height);
        add("stopX", found[i].right, width);
        add("stopY", found[i].bottom, height);
    }
    return lines;
}

constexpr std::array actions{
    Action{adminPath, "get.auto.tracking", tellTracking},
    Action{adminPath, "set.auto.tracking", setTracking},
    Action{adminPath, "get.track.point", tellPoints},
};

} // namespace

constinit const Area trackingArea{.settings = settings, .actions = actions};

} // namespace kxsim

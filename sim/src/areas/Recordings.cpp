// The search of recordings, and the camera's own playback of them. Times are fourteen digits, "20240501081500". Each
// recording is a file on the memory card, named after the time when it begins, and lasts an hour.
#include "Area.h"
#include "Card.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace kxsim
{
namespace
{

constexpr std::string_view start = "PBStartTimePos";
constexpr std::string_view end = "PBEndTimePos";
constexpr std::string_view position = "PBCurTimePos"; // empty: nothing is played

constexpr std::array settings{
    Setting{start, "", Access::Hidden},      Setting{end, "", Access::Hidden},
    Setting{position, "", Access::Hidden},   Setting{"PBState", "-1", Access::Hidden},
    Setting{"PBSpeed", "1", Access::Hidden},
};

constexpr StoredFile recording(std::string_view path)
{
    return {path, "a recording of the simulated camera, which films nothing\n"};
}

constexpr std::array files{
    recording("/sd/20240501080000.avi"), recording("/sd/20240501090000.avi"),
    recording("/sd/20240501100000.avi"), recording("/sd/20240501110000.avi"),
    recording("/sd/20240501120000.avi"), recording("/sd/20240501130000.avi"),
    recording("/sd/20240501140000.avi"), recording("/sd/20240501150000.avi"),
    recording("/sd/20240501160000.avi"), recording("/sd/20240501170000.avi"),
    recording("/sd/20240501180000.avi"), recording("/sd/20240501190000.avi"),
};

constexpr std::size_t pageSize = 5;
constexpr std::size_t timeSize = 14;
constexpr std::size_t hourSize = 10; // of a time's digits, those up to the hour

bool isTime(std::string_view text)
{
    return text.size() == timeSize && text.find_first_not_of("0123456789") == text.npos;
}

/// The file's name on the card, or nothing when it is no recording.
std::string_view recordingIn(std::string_view path)
{
    if (!path.starts_with(cardDirectory) || !path.ends_with(".avi"))
        return {};
    const std::string_view name = path.substr(cardDirectory.size());
    return isTime(name.substr(0, name.size() - 4)) ? name : std::string_view();
}

/// The entries "name,size" of what was recorded in the time that a client asks for; nothing when that is no time.
std::optional<std::vector<std::string>> search(const Settings& camera, const Files& stored)
{
    const std::string first = camera.text(start);
    const std::string last = camera.text(end);
    if (!isTime(first) || !isTime(last) || !isWithinReach(camera, cardDirectory))
        return std::nullopt;
    std::vector<std::string> found;
    for (const auto& [path, content] : stored) {
        const std::string_view name = recordingIn(path);
        if (!name.empty() && name.substr(0, hourSize) >= first.substr(0, hourSize) &&
            name.substr(0, timeSize) <= last)
            found.push_back(std::string(name) + "," + std::to_string(content.size()));
    }
    return found;
}

std::optional<std::string> tellPages(Settings& camera, Files& stored, const std::string&)
{
    const auto found = search(camera, stored);
    if (!found)
        return std::nullopt;
    return "OK pbfiletotalpage=" + std::to_string((found->size() + pageSize - 1) / pageSize);
}

std::optional<std::string> tellPage(Settings& camera, Files& stored, const std::string& index)
{
    const auto found = search(camera, stored);
    const std::size_t from = std::strtoul(index.c_str(), nullptr, 10) * pageSize; // pages count from 0
    if (!found || from >= found->size())
        return std::nullopt;
    std::string line;
    for (std::size_t i = from; i < std::min(from + pageSize, found->size()); ++i)
        line += (line.empty() ? "" : ";") + (*found)[i];
    return "OK pbfilepageindex=" + line;
}

/// Plays from a time on; the name of the recording there.
std::optional<std::string> playFrom(Settings& camera, const Files& stored, const std::string& time)
{
    if (!isTime(time) || !isWithinReach(camera, cardDirectory))
        return std::nullopt;
    for (const auto& [path, content] : stored) {
        const std::string_view name = recordingIn(path);
        if (name.substr(0, hourSize) != time.substr(0, hourSize))
            continue;
        camera.put(position, time);
        camera.put("PBState", "1");
        return std::string(name);
    }
    return std::nullopt;
}

std::optional<std::string> playOrTell(Settings& camera, Files& stored, const std::string& time)
{
    if (!time.empty()) {
        const auto name = playFrom(camera, stored, time);
        return name ? std::optional("OK pbcurtimepos=" + time + "," + *name) : std::nullopt;
    }
    const std::string now = camera.text(position);
    return now.empty() ? std::nullopt : std::optional("OK pbcurtimepos=" + now);
}

std::optional<std::string> playOverHttp(Settings& camera, Files& stored, const std::string& time)
{
    const auto name = playFrom(camera, stored, time);
    if (!name)
        return std::nullopt;
    return "OK pbcurtimepos=http://" + camera.text("netip") + ":" + camera.text("httpport") +
           "/dataloader.cgi?dw=sd&file=" + *name;
}

constexpr std::array fileInquiries{
    FileInquiry{"PBFileTotalPage", tellPages},
    FileInquiry{"PBFilePageIndex", tellPage},
    FileInquiry{"PBCurTimePos", playOrTell},
    FileInquiry{"PBCurTimePosHttp", playOverHttp},
};

// Stop, pause, go on, change the speed. All but the first need something that is played.
bool control(Settings& camera, const std::string& state)
{
    constexpr std::string_view states[] = {"-1", "0", "1", "2"};
    const bool known = std::find(std::begin(states), std::end(states), state) != std::end(states);
    if (!known || (state != "-1" && camera.text(position).empty()))
        return false;
    if (state == "-1")
        camera.put(position, "");
    return camera.keep("PBState", state);
}

constexpr std::array setRules{
    SetRule{start, keepAs<"PBStartTimePos">},
    SetRule{end, keepAs<"PBEndTimePos">},
    SetRule{"PBState", control},
    SetRule{"PBSpeed", keepAs<"PBSpeed">},
};

} // namespace

constinit const Area recordingsArea{
    .settings = settings, .setRules = setRules, .files = files, .fileInquiries = fileInquiries};

} // namespace kxsim

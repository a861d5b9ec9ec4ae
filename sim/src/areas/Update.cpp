// Online update: the camera finds newer firmware, fetches it and installs it.
#include "Area.h"

#include <array>
#include <charconv>

namespace kxsim
{
namespace
{

constexpr std::string_view offered = "2.1.0";
constexpr std::string_view wanted = "update.wanted";     // the version being installed; empty: none
constexpr std::string_view progress = "update.progress"; // in per cent
constexpr int step = 25; // for each time it is asked, so that nobody has to wait for it
constexpr int done = 100;

constexpr std::array settings{
    Setting{wanted, "", Access::Hidden},
    Setting{progress, "0", Access::Hidden},
};

std::optional<std::string> offer(Settings&, const std::string&)
{
    return "OK checkupdate=" + std::string(offered);
}

std::optional<std::string> begin(Settings& camera, const std::string& version)
{
    if (version.empty())
        return "NG updateonline";
    camera.put(wanted, version);
    camera.put(progress, "0");
    return "OK updateonline";
}

// A camera that is not told to update has nothing to say. What is not offered can not be fetched.
std::optional<std::string> tellProgress(Settings& camera, const std::string&)
{
    const std::string version = camera.text(wanted);
    if (version.empty())
        return std::nullopt;
    if (version != offered)
        return "OK errcode=-1";
    const std::string told = camera.text(progress);
    int percent = 0; // what is no number begins anew
    std::from_chars(told.data(), told.data() + told.size(), percent);
    if (percent <= done - step)
        camera.put(progress, std::to_string(percent + step));
    else
        camera.put("softversion", offered);
    return "OK updateprogress=" + told;
}

constexpr std::array inquiries{
    Inquiry{"checkupdate", offer},
    Inquiry{"updateonline", begin},
    Inquiry{"updateprogress", tellProgress},
};

} // namespace

constinit const Area updateArea{.settings = settings, .inquiries = inquiries};

} // namespace kxsim

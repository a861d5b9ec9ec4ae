// The storage area: the memory card, what is recorded to it, and what becomes of settings when firmware is installed.
#include "Area.h"
#include "Card.h"

#include <array>
#include <cstddef>

namespace kxsim
{
namespace
{

constexpr std::string_view mounted = "sd.mounted"; // a key of the simulation's own
constexpr std::size_t cardSize = 31'166'976;       // in kilobytes, as are all sizes that the camera tells

constexpr std::array settings{
    Setting{mounted, "1", Access::Hidden},
    Setting{"sdinsert", "1", Access::ReadOnly},
    Setting{"sdtotalsize", "", Access::ReadOnly}, // this one and the next follow from the card
    Setting{"sdfreesize", "", Access::ReadOnly},

    // TI cameras tell of network drives, too, but have none.
    Setting{"recordstoragetype", "0"},
    Setting{"sdfilemaxsize", "256"},
    Setting{"recordframetype", "1"},
    Setting{"nasfilemaxsize", "512"},
    Setting{"nasrecordframetype", "2"},
    Setting{"deletesdoldfile", "1"},
    Setting{"msfsprerecordtime", "5"},

    Setting{"keepconfig", "0", Access::Hidden},
    Setting{"kernalversion", "D-1.2.6.37", Access::ReadOnly},
};

constexpr std::array pages{Page{"sdrecordset"}};

bool isInserted(const Settings& camera)
{
    return camera.text("sdinsert") == "1";
}

bool isMounted(const Settings& camera)
{
    return isInserted(camera) && camera.text(mounted) == "1";
}

bool mountOrUnmount(Settings& camera, const std::string& value)
{
    if (!isInserted(camera) || (value != "8" && value != "1"))
        return false;
    return camera.keep(mounted, value == "8" ? "1" : "0");
}

constexpr std::array setRules{
    SetRule{"sdunmount", mountOrUnmount},
    SetRule{"keepconfig", keepAs<"keepconfig">},
};

bool isOnCard(std::string_view path)
{
    return path.starts_with(cardDirectory);
}

void tellSizes(Settings& camera, const Files& files)
{
    std::size_t used = 0;
    for (const auto& [path, content] : files)
        if (isOnCard(path))
            used += content.size() / 1024 + 1;
    camera.put("sdtotalsize", isMounted(camera) ? std::to_string(cardSize) : "0");
    camera.put("sdfreesize", isMounted(camera) ? std::to_string(cardSize - used) : "0");
}

std::optional<std::string> format(Settings& camera, Files& files, const std::string& value)
{
    if (!isInserted(camera) || value != "1")
        return std::nullopt;
    std::erase_if(files, [](const auto& file) { return isOnCard(file.first); });
    return "OK sdformat";
}

std::optional<std::string> eraseOem(Settings&, Files& files, const std::string&)
{
    files.erase(std::string(oemConfiguration));
    return "OK eraseoem";
}

constexpr std::array fileInquiries{
    FileInquiry{"sdformat", format},
    FileInquiry{"eraseoem", eraseOem},
};

} // namespace

bool isWithinReach(const Settings& camera, std::string_view path)
{
    return !isOnCard(path) || isMounted(camera);
}

constinit const Area storageArea{.settings = settings,
                                 .setRules = setRules,
                                 .pages = pages,
                                 .fileInquiries = fileInquiries,
                                 .refresh = tellSizes};

} // namespace kxsim

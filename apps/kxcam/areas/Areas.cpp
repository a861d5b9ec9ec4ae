#include "areas/Areas.h"

#include "Failure.h"

namespace kxcam
{

// Each is defined in the file of its name.
extern const Area networkArea, wifiArea, ddnsArea, smtpArea, ftpArea, upnpArea, portsArea;
extern const Area clockArea, systemArea;

namespace
{

constexpr const Area* areas[] = {
    &networkArea, &wifiArea, &ddnsArea, &smtpArea, &ftpArea, &upnpArea, &portsArea, &clockArea, &systemArea,
};

} // namespace

const Area& findArea(const std::string& name)
{
    std::string names;
    for (const Area* area : areas) {
        if (area->name == name)
            return *area;
        names.append(names.empty() ? "" : ", ").append(area->name);
    }
    throw Failure(ExitCode::Usage, "there is no area '" + name + "'. Areas: " + names);
}

std::string areaHelp()
{
    std::string text = "Areas:\n";
    for (const Area* area : areas) {
        std::string name(area->name);
        name.resize(10, ' ');
        text.append("  ").append(name).append(area->help).append("\n");
    }
    return text;
}

} // namespace kxcam

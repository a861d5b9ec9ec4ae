#include "areas/Areas.h"

#include "Failure.h"

namespace kxcam
{

// Each is defined in the file of its name.
extern const Area networkArea, wifiArea, ddnsArea, smtpArea, ftpArea, upnpArea, portsArea;
extern const Area clockArea, systemArea;
extern const Area videoArea, audioArea, osdArea;
extern const Area ptzPortArea, recordingArea, trackingArea;

namespace
{

constexpr const Area* areas[] = {
    &networkArea, &wifiArea,  &ddnsArea,  &smtpArea, &ftpArea,       &upnpArea,    &portsArea,    &clockArea,
    &systemArea,  &videoArea, &audioArea, &osdArea,  &recordingArea, &ptzPortArea, &trackingArea,
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

const Area& findStream(const Area& area, const std::string& name)
{
    if (area.streams.empty() && name.empty())
        return area;
    std::string names;
    for (const Stream& stream : area.streams) {
        if (stream.name == name)
            return *stream.area;
        names.append(names.empty() ? "" : ", ").append(stream.name);
    }
    if (names.empty())
        throw Failure(ExitCode::Usage, std::string(area.name) + " has no streams: leave --stream out");
    throw Failure(ExitCode::Usage, name.empty() ? "which stream of " + std::string(area.name) +
                                                      "? Give one with --stream: " + names
                                                : "there is no stream '" + name + "'. Streams: " + names);
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

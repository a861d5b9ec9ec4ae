#include "Contenders.h"

#include <filesystem>
#include <iterator>
#include <sstream>

namespace
{

std::string clientPath()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kx_media_client";
}

std::string urlOf(const Endpoint& camera, const std::string& credentials = "")
{
    return "rtsp://" + credentials + camera.host + ":" + std::to_string(camera.rtspPort) + "/main";
}

/// A command line without quotes.
Command words(const std::string& line)
{
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

Command ffmpeg(unsigned frames, const Endpoint& camera, const std::string& output)
{
    return words("ffmpeg -nostdin -y -loglevel error -rtsp_transport tcp -i " +
                 urlOf(camera, "admin:admin@") + " -frames:v " + std::to_string(frames) + output);
}

std::vector<Command> decodeByFfmpeg(unsigned frames, EndpointSpan cameras)
{
    std::vector<Command> commands;
    for (const Endpoint& camera : cameras)
        commands.push_back(
            ffmpeg(frames, camera, " -fps_mode passthrough -f rawvideo -pix_fmt bgr24 /dev/null"));
    return commands;
}

/// Having shown its last frame, gst-launch sometimes trips over its own farewell to the camera and reports a failure.
std::vector<Command> decodeByGstreamer(unsigned frames, EndpointSpan cameras)
{
    std::vector<Command> commands;
    for (const Endpoint& camera : cameras)
        commands.push_back({"sh", "-c",
                            "gst-launch-1.0 -q rtspsrc location=" + urlOf(camera) +
                                " protocols=tcp user-id=admin user-pw=admin ! rtph264depay ! h264parse !"
                                " avdec_h264 ! videoconvert ! video/x-raw,format=BGR !"
                                " identity eos-after=" +
                                std::to_string(frames) + " ! fakesink || true"});
    return commands;
}

std::vector<Command> recordByFfmpeg(unsigned frames, EndpointSpan cameras, const std::string& directory)
{
    std::vector<Command> commands;
    for (const Endpoint& camera : cameras) {
        Command& command = commands.emplace_back(ffmpeg(frames, camera, " -c copy"));
        command.push_back(directory + "/ffmpeg_" + camera.host + ".avi");
    }
    return commands;
}

} // namespace

Command client(const std::string& mode, unsigned count, EndpointSpan cameras)
{
    Command command{clientPath(), mode, std::to_string(count)};
    for (const Endpoint& camera : cameras)
        command.push_back(camera.host + ":" + std::to_string(camera.port) + ":" +
                          std::to_string(camera.rtspPort));
    return command;
}

std::vector<Contender> decoders()
{
    const auto ours = [](const char* mode) {
        return [mode](unsigned frames, EndpointSpan cameras) {
            return std::vector<Command>{client(mode, frames, cameras)};
        };
    };
    return {{"sdk", ours("watch-sdk")},
            {"floor", ours("watch-floor")},
            {"ffmpeg", decodeByFfmpeg},
            {"gstreamer", decodeByGstreamer}};
}

std::vector<Contender> recorders(const std::string& directory)
{
    const auto sdk = [directory](unsigned frames, EndpointSpan cameras) {
        Command command = client("record", frames, cameras);
        command.insert(command.begin() + 3, directory);
        return std::vector<Command>{command};
    };
    const auto ffmpegCopy = [directory](unsigned frames, EndpointSpan cameras) {
        return recordByFfmpeg(frames, cameras, directory);
    };
    return {{"sdk", sdk}, {"ffmpeg", ffmpegCopy}};
}

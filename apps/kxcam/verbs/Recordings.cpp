// kxcam recordings search|info|position|control: the camera's own search of its recordings, and its playback.
#include <cstdint>

#include <nlohmann/json.hpp>

#include <KxIpcSDK/KxSdk.h>
#include <KxIpcSDK/KxStorage.h>

#include "Carriable.h"
#include "Json.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
Times are written in the camera's own form (the simulated camera's: 20240501081500), and
lists are shown as the camera writes them.

Examples:
  kxcam --host 192.168.1.20 recordings search 20240501000000 20240501235959
  kxcam --host 192.168.1.20 recordings info 20240501081500 --http
  kxcam --host 192.168.1.20 recordings control speed 4

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

struct Options
{
    std::string start;
    std::string end;
    int firstPage = 0;
    bool http = false;
    int speed = 0;
};

/// A text of the camera's, through a room of the size of its longest answer.
template <typename Call>
std::string ask(const std::string& what, const std::string& whenUntold, Call call)
{
    std::string text(20480, '\0');
    if (call(text.data(), static_cast<std::uint32_t>(text.size())) != 0)
        throw sdkFailure(what, whenUntold);
    text.resize(text.find('\0'));
    return text;
}

void requireTime(const std::string& time)
{
    if (const auto why = obstacle(time))
        throw Failure(ExitCode::Usage, "the time '" + printable(time) + "' " + *why);
}

/// Shows the pages as they come, or all at once as JSON.
ExitCode search(const Options& options, const CommandLine& line, Console& console)
{
    requireTime(options.start);
    requireTime(options.end);
    const Session session(line.target);
    const char* start = options.start.c_str();
    const char* end = options.end.c_str();
    const std::string what = "the search of the recordings of " + line.target.address();
    const int count = Kx_Ipc_GetPlaybackPageCnt(session.userId(), start, end);
    if (count < 0)
        throw sdkFailure(
            what, "the camera tells no number of pages. It may have no card, or write times otherwise");

    auto pages = nlohmann::ordered_json::array();
    for (int index = options.firstPage; index - options.firstPage < count; ++index) {
        const std::string page =
            ask(what, "the camera has no page " + std::to_string(index), [&](char* text, std::uint32_t size) {
                return Kx_Ipc_GetPlaybackFilename(session.userId(), index, start, end, text, size);
            });
        if (line.json)
            pages.push_back({{"page", index}, {"list", page}});
        else
            console.printNow("page " + std::to_string(index) + "  " + printable(page) + "\n");
    }
    if (line.json)
        printJson({{"pages", pages}}, console);
    else if (count == 0)
        remark("no recordings between these times");
    return ExitCode::Ok;
}

void show(const char* key, const std::string& text, const CommandLine& line, Console& console)
{
    if (line.json)
        printJson({{key, text}}, console);
    else
        console.print(printable(text) + "\n");
}

ExitCode info(const Options& options, const CommandLine& line, Console& console)
{
    requireTime(options.start);
    const Session session(line.target);
    const auto call = options.http ? Kx_Ipc_GetPlaybackHttpFileInfo : Kx_Ipc_GetPlaybackFileInfo;
    show("info",
         ask("asking " + line.target.address() + " for a recording", "the camera tells of none at that time",
             [&](char* text, std::uint32_t size) {
                 return call(session.userId(), options.start.c_str(), text, size);
             }),
         line, console);
    return ExitCode::Ok;
}

ExitCode position(const CommandLine& line, Console& console)
{
    const Session session(line.target);
    show("position",
         ask("asking " + line.target.address() + " where its playback is", "the camera tells no position",
             [&](char* text, std::uint32_t size) {
                 return Kx_Ipc_GetPlaybackTime(session.userId(), text, size);
             }),
         line, console);
    return ExitCode::Ok;
}

/// The camera does not tell whether it did it.
ExitCode steer(const std::function<int(long userId)>& call, const CommandLine& line, Console& console)
{
    const Session session(line.target);
    if (call(session.userId()) != 0)
        throw sdkFailure("steering the playback of " + line.target.address());
    console.print(line.json ? "{\"sent\": true}\n" : "sent\n");
    return ExitCode::Ok;
}

ExitCode changeSpeed(const Options& options, const CommandLine& line, Console& console)
{
    return steer([&](long userId) { return Kx_Ipc_ChangePlaybackSpeed(userId, options.speed); }, line,
                 console);
}

void addControl(const Verb& recordings, const std::shared_ptr<Options>& options)
{
    const Verb control = recordings.add("control", "Steer the camera's playback");
    const auto add = [&](const char* name, const char* help, int (*call)(long userId)) {
        control.add(name, help).does([call](const CommandLine& line, Console& console) {
            return steer(call, line, console);
        });
    };
    add("stop", "End it", Kx_Ipc_StopPlayback);
    add("pause", "Hold it", Kx_Ipc_PausePlayback);
    add("resume", "Let it go on", Kx_Ipc_ResumePlayback);
    control.add("speed", "Change its speed")
        .does(changeSpeed, options)
        .argument("N", &options->speed, "A code of the camera's")
        .required();
}

} // namespace

void addRecordings(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb recordings =
        kxcam.add("recordings", "Search the camera's recordings, and steer its playback", footer);
    const Verb searching =
        recordings.add("search", "List what was recorded between two times").does(search, options);
    searching.argument("START", &options->start, "The earlier time").required();
    searching.argument("END", &options->end, "The later time").required();
    searching.option("--first", "N", &options->firstPage, "The index of the camera's first page")
        .within(0, 1)
        .showDefault();
    const Verb asking =
        recordings.add("info", "Play from a time on, and show the recording there").does(info, options);
    asking.argument("TIME", &options->start, "The time").required();
    asking.flag("--http", &options->http, "For playback over HTTP");
    recordings.add("position", "Show where the camera's playback is").does(position);
    addControl(recordings, options);
}

} // namespace kxcam

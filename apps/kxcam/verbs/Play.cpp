// kxcam play: plays a recorded file and tells where it is.
#include <algorithm>
#include <atomic>
#include <iterator>

#include <nlohmann/json.hpp>

#include <KxIpcSDK/KxMedia.h>

#include "Amounts.h"
#include "Interruption.h"
#include "Json.h"
#include "Progress.h"
#include "verbs/MediaOptions.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

using Clock = std::chrono::steady_clock;

struct Options
{
    std::string file;
    std::string speed = "1";
    double from = 0; // seconds
    double seconds = forEver;
};

constexpr char footer[] = R"(
Decodes the file as fast as it was recorded, or at another speed, and shows time and frames.
The library plays files within a session, so a camera must be given and let kxcam in; it is not
asked for the file.

Examples:
  kxcam --host 192.168.1.20 play door.avi
  kxcam --host 192.168.1.20 play door.avi --seek 30 --speed 4 --json

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

struct Speed
{
    const char* name;
    int direction;
    int step;
};

constexpr Speed speeds[] = {{"1/16", 2, 4}, {"1/8", 2, 3}, {"1/4", 2, 2}, {"1/2", 2, 1}, {"1", 1, 0},
                            {"2", 1, 1},    {"4", 1, 2},   {"8", 1, 3},   {"16", 1, 4}};

std::vector<std::string> speedNames()
{
    std::vector<std::string> names;
    for (const Speed& speed : speeds)
        names.emplace_back(speed.name);
    return names;
}

const Speed& speedOf(const std::string& name)
{
    return *std::find_if(std::begin(speeds), std::end(speeds),
                         [&](const Speed& speed) { return speed.name == name; });
}

/// Plays a file as long as this lives.
class Playback
{
public:
    Playback(const Session& session, const std::string& file) : userId_(session.userId())
    {
        Kx_IpcClient_SetLiveDataCallBack(userId_, nullptr, &frames_); // the user of a playback's frames, too
        if (Kx_IpcClient_OpenPlayBack(userId_, file.c_str(), count, nullptr) != 0)
            throw Failure(ExitCode::Usage,
                          file +
                              " can not be played: it is no recording, or one of a kind that is not known");
    }
    ~Playback() { Kx_IpcClient_StopPlayBack(userId_); }
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    void setSpeed(const Speed& speed) const
    {
        Kx_IpcClient_PlayBackControl(userId_, speed.direction, speed.step);
    }
    void seek(double seconds) const
    {
        Kx_IpcClient_SeekPlayTime(userId_, static_cast<int>(secondsAtMost(seconds, 2e6).count()));
    }

    bool hasFinished() const { return Kx_IpcClient_IsPlayFinished(userId_) != 0; }
    std::int64_t frames() const { return frames_; }
    std::chrono::milliseconds position() const
    {
        return std::chrono::milliseconds(Kx_IpcClient_GetCurrentTime(userId_));
    }
    std::chrono::milliseconds length() const
    {
        return std::chrono::milliseconds(Kx_IpcClient_GetFileDuration(userId_));
    }

private:
    static void count(long, int dataType, const std::uint8_t* data, int, int, int, void* frames) noexcept
    {
        if (dataType == KX_DATA_VIDEO && data != nullptr)
            ++*static_cast<std::atomic<std::int64_t>*>(frames);
    }

    long userId_;
    std::atomic<std::int64_t> frames_{0};
};

std::string textOf(const Playback& playback)
{
    return clockText(playback.position()) + " / " + clockText(playback.length()) + "  " +
           counted(playback.frames(), "frame");
}

/// Until the end of the file or of the time, or until the person wants to end.
void follow(const Playback& playback, double seconds, ProgressLine& display, const Console& console)
{
    constexpr double betweenLooks = 0.1;
    const double betweenLines = display.redraws() ? betweenLooks : 1;
    const SignalHold signals;
    const auto begin = Clock::now();
    double nextLine = betweenLines;
    bool wanted = false;
    while (!wanted && !console.isBroken() && !playback.hasFinished() && secondsSince(begin) < seconds) {
        wanted = signals.pause(secondsAtMost(seconds - secondsSince(begin), betweenLooks));
        if (secondsSince(begin) < nextLine)
            continue;
        display.show(textOf(playback));
        nextLine += betweenLines;
    }
    display.show(textOf(playback));
}

ExitCode play(const Options& options, const CommandLine& line, Console& console)
{
    const Session session(line.target);
    ProgressLine display(line.json, console);
    const Playback playback(session, options.file);
    playback.setSpeed(speedOf(options.speed));
    if (options.from > 0)
        playback.seek(options.from);
    follow(playback, options.seconds, display, console);
    if (line.json)
        printJson({{"finished", playback.hasFinished()},
                   {"frames", playback.frames()},
                   {"position_ms", playback.position().count()},
                   {"length_ms", playback.length().count()}},
                  console);
    return ExitCode::Ok;
}

} // namespace

void addPlay(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb = kxcam.add("play", "Play a recorded file", footer).does(play, options);
    verb.argument("FILE", &options->file, "The recording").required().existingFile();
    verb.option("--speed", "SPEED", &options->speed, "1/16 to 16 times as fast")
        .oneOf(speedNames())
        .showDefault();
    verb.option("--seek", "SECONDS", &options->from, "Begin at this time of the recording").within(0.0, 2e6);
    addSecondsOption(verb, &options->seconds);
}

} // namespace kxcam

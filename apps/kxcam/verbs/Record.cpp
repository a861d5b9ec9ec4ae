// kxcam record: records a live stream.
#include <optional>

#include <nlohmann/json.hpp>

#include "Amounts.h"
#include "Interruption.h"
#include "Json.h"
#include "Landing.h"
#include "LiveView.h"
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
    std::string stream = "main";
    double seconds = forEver;
    std::string file;
};

constexpr char footer[] = R"(
Records from the next key frame on, as the camera sends it, until Ctrl-C.
Without FILE, the recording is saved in the working directory, named after its time.
A FILE that is there already is replaced in the end. Until then the recording is in a
directory kxcam.XXXXXX beside it. When the camera sends pictures of another size meanwhile,
they become a further recording, named after its time.

Examples:
  kxcam --host 192.168.1.20 record door.avi
  kxcam --host 192.168.1.20 record --stream sub --seconds 60 --json

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

/// Begins the recording and ends it, also when watching it fails.
class Recorder
{
public:
    Recorder(long userId, const std::string& directory) : userId_(userId)
    {
        if (Kx_IpcClient_SaveLiveData(userId, directory.c_str()) != 0)
            throw sdkFailure("recording");
    }
    ~Recorder() { Kx_IpcClient_StopSaveLiveData(userId_); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

private:
    long userId_;
};

/// Waits for the first key frame.
void awaitBegin(const LiveView& view, const SignalHold& signals)
{
    const auto asked = Clock::now();
    for (KxLiveStatus status = view.status(); status.recordedFrames == 0; status = view.status()) {
        if (status.recording == 0)
            throw Failure(ExitCode::ThisComputer, "the recording can not be written. Is the disk full?");
        if (signals.pause(std::chrono::milliseconds(20)))
            throw Interruption("stopped before the first picture came; nothing is recorded");
        if (secondsSince(asked) > longestWait)
            throw view.nothingCame();
    }
}

/// Follows the recording until its time is over, the person wants to end or it can not go on; the status then.
KxLiveStatus follow(const LiveView& view, const SignalHold& signals, double seconds, ProgressLine& display)
{
    const auto begin = Clock::now();
    while (true) {
        const double left = seconds - secondsSince(begin);
        const bool wanted = signals.pause(secondsAtMost(left, 1));
        const KxLiveStatus status = view.status();
        display.show(clockText(secondsAtMost(secondsSince(begin), forEver)) + "  " +
                     counted(status.recordedFrames, "frame") + "  " +
                     sizeText(static_cast<std::uint64_t>(status.recordedBytes)));
        if (wanted || left <= 1 || status.recording == 0 || status.refused != 0)
            return status;
    }
}

/// What has been recorded.
struct Recording
{
    std::vector<std::string> files; // one, unless the stream has changed meanwhile
    double seconds = 0;
    std::uint64_t bytes = 0;
    std::optional<std::int64_t> frames; // of a single file that could be written to its end
};

/// How long a recording is, by its own account, in seconds.
double lengthOf(long userId, const std::string& file)
{
    if (Kx_IpcClient_OpenPlayBack(userId, file.c_str(), nullptr, nullptr) != 0)
        throw Failure(ExitCode::ThisComputer,
                      printable(file) + " can not be played; has the disk no room left?");
    const double length = Kx_IpcClient_GetFileDuration(userId) / 1000.0;
    Kx_IpcClient_StopPlayBack(userId);
    return length;
}

Recording deliver(LandingDirectory& landing, const std::string& wanted, long userId,
                  const KxLiveStatus& status)
{
    Recording recording;
    for (const std::filesystem::path& file : landing.files()) {
        const auto saved = landing.deliver(file, recording.files.empty() ? wanted : "");
        recording.files.push_back(saved);
        recording.bytes += std::filesystem::file_size(saved);
    }
    for (const std::string& file : recording.files)
        recording.seconds += lengthOf(userId, file);
    if (recording.files.size() == 1 && status.recording != 0)
        recording.frames = status.recordedFrames;
    return recording;
}

void print(const Recording& recording, bool json, Console& console)
{
    if (json)
        printJson({{"files", recording.files},
                   {"frames", recording.frames ? nlohmann::ordered_json(*recording.frames) : nullptr},
                   {"seconds", recording.seconds},
                   {"bytes", recording.bytes}},
                  console);
    else
        console.print("saved " + printable(joined(recording.files, ", ")) + ", " +
                      (recording.frames ? counted(*recording.frames, "frame") + " in " : "") +
                      decimal(recording.seconds) + " seconds, " + sizeText(recording.bytes) + "\n");
}

/// Records until follow() ends; the status then, and with the frames of the whole recording.
KxLiveStatus recordInto(const LandingDirectory& landing, const LiveView& view, const SignalHold& signals,
                        long userId, double seconds, ProgressLine& display)
{
    KxLiveStatus status{};
    {
        const Recorder recorder(userId, landing.path());
        awaitBegin(view, signals);
        status = follow(view, signals, seconds, display);
    }
    status.recordedFrames = view.status().recordedFrames;
    return status;
}

ExitCode record(const Options& options, const CommandLine& line, Console& console)
{
    const std::filesystem::path directory = directoryFor(options.file);
    const Session session(line.target);
    const LiveView view(session, line.target, options.stream);
    const SignalHold signals;
    LandingDirectory landing(directory);
    ProgressLine display(line.json, console, ProgressLine::Nothing);
    const KxLiveStatus status =
        recordInto(landing, view, signals, session.userId(), options.seconds, display);
    display.finish();
    print(deliver(landing, options.file, session.userId(), status), line.json, console);
    view.requireSending(status);
    if (status.recording == 0)
        throw Failure(ExitCode::ThisComputer,
                      "the recording could not be written to its end. Is the disk full?");
    return ExitCode::Ok;
}

} // namespace

void addRecord(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb = kxcam.add("record", "Record a live stream", footer).does(record, options);
    verb.argument("FILE", &options->file, "Where to (AVI)");
    addStreamOption(verb, &options->stream);
    addSecondsOption(verb, &options->seconds);
}

} // namespace kxcam

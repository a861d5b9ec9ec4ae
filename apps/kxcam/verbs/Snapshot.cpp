// kxcam snapshot: saves a picture of a live stream.
#include "Amounts.h"
#include "Interruption.h"
#include "Landing.h"
#include "LiveView.h"
#include "verbs/MediaOptions.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr std::chrono::milliseconds betweenAttempts{200};

struct Options
{
    std::string stream = "main";
    std::string file;
};

constexpr char footer[] = R"(
Without FILE, the picture is saved in the working directory, named after its time.
A FILE that is there already is replaced.

Examples:
  kxcam --host 192.168.1.20 snapshot door.jpg
  kxcam --host 192.168.1.20 snapshot --stream sub --json

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

/// The picture that the library saves. It saves none that was damaged on its way; a whole one may follow.
std::string capture(const Session& session, const LiveView& view, const SignalHold& signals,
                    const std::string& directory)
{
    const auto begin = std::chrono::steady_clock::now();
    char path[4096] = "";
    while (true) {
        if (Kx_IpcClient_CaptureImage(session.userId(), path, sizeof path, directory.c_str()) != 0)
            throw sdkFailure("the snapshot");
        if (path[0] != '\0')
            return path;
        if (signals.pause(betweenAttempts))
            throw Interruption("stopped; no picture is saved");
        if (secondsSince(begin) > longestWait)
            throw view.status().width == 0
                ? view.nothingCame()
                : Failure(ExitCode::ThisComputer,
                          "no picture could be saved: none came undamaged, or the disk is full");
    }
}

ExitCode snapshot(const Options& options, const CommandLine& line, Console& console)
{
    const std::filesystem::path directory = directoryFor(options.file);
    const Session session(line.target);
    const LiveView view(session, line.target, options.stream);
    const SignalHold signals; // so that Ctrl-C leaves no directory behind
    LandingDirectory landing(directory);
    const std::filesystem::path saved =
        landing.deliver(capture(session, view, signals, landing.path()), options.file);
    reportSaved(saved, std::filesystem::file_size(saved), line.json, console);
    return ExitCode::Ok;
}

} // namespace

void addSnapshot(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb =
        kxcam.add("snapshot", "Save a picture of a live stream", footer).does(snapshot, options);
    verb.argument("FILE", &options->file, "Where to (JPEG)");
    addStreamOption(verb, &options->stream);
}

} // namespace kxcam

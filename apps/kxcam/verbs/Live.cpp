// kxcam live: shows how a live stream does, and saves its pictures.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "Amounts.h"
#include "Interruption.h"
#include "Json.h"
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
    std::string frames;
};

constexpr char footer[] = R"(
Shows picture size, frames, frame rate, bit rate and losses once a second, until Ctrl-C,
and then what it came to in all. A stream that breaks off is opened again by itself; when
it is not back in the end, the exit code is 4.
With --frames, each picture is decoded and written to DIR as frame-000001.ppm and so on;
they take 3 bytes a pixel, so mind the room.

Examples:
  kxcam --host 192.168.1.20 live
  kxcam --host 192.168.1.20 live --stream sub --seconds 10 --json
  kxcam --host 192.168.1.20 live --seconds 2 --frames pictures

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

/// Receives the decoded pictures, on the library's thread, and writes them where that is wanted.
class Pictures
{
public:
    explicit Pictures(const std::string& directory) : directory_(directory)
    {
        std::error_code error;
        if (!directory.empty() && (std::filesystem::create_directories(directory, error), error))
            throw Failure(ExitCode::ThisComputer, "can not make " + directory + ": " + error.message());
    }

    static void take(long, int dataType, const std::uint8_t* data, int size, int width, int height,
                     void* pictures) noexcept
    {
        if (dataType == KX_DATA_VIDEO)
            static_cast<Pictures*>(pictures)->add(data, size, width, height);
    }

    std::int64_t count() const { return count_; }

    void requireWritten() const
    {
        if (failed_)
            throw Failure(ExitCode::ThisComputer, "can not write pictures to " + directory_);
    }

private:
    void add(const std::uint8_t* bgr, int size, int width, int height)
    {
        ++count_;
        if (!directory_.empty() && !failed_)
            failed_ = !write(bgr, size, width, height);
    }

    bool write(const std::uint8_t* bgr, int size, int width, int height)
    {
        char name[32];
        std::snprintf(name, sizeof name, "frame-%06lld.ppm", static_cast<long long>(count_));
        rgb_.assign(bgr, bgr + size);
        for (std::size_t i = 0; i + 2 < rgb_.size(); i += 3)
            std::swap(rgb_[i], rgb_[i + 2]);
        std::ofstream file(std::filesystem::path(directory_) / name, std::ios::binary);
        file << "P6\n" << width << ' ' << height << "\n255\n" << rgb_;
        return static_cast<bool>(file.flush());
    }

    std::string directory_;
    std::string rgb_;
    std::atomic<std::int64_t> count_{0};
    std::atomic<bool> failed_{false};
};

/// Rates over the time between two looks.
struct Rates
{
    double frames = 0;
    double kilobits = 0;
};

Rates ratesOf(const KxLiveStatus& before, const KxLiveStatus& after, double seconds)
{
    return {static_cast<double>(after.framesReceived - before.framesReceived) / seconds,
            static_cast<double>(after.bytesReceived - before.bytesReceived) * 8 / 1000 / seconds};
}

std::string textOf(const KxLiveStatus& status, const Rates& rates)
{
    if (status.connected == 0)
        return "broken off; waiting for the camera (" + counted(status.reconnects, "reconnect") + " so far)";
    const std::string size = std::to_string(status.width) + "x" + std::to_string(status.height);
    return (status.width == 0 ? "no picture yet" : size) + "  " + counted(status.framesReceived, "frame") +
           "  " + decimal(rates.frames) + " a second  " + std::to_string(static_cast<long>(rates.kilobits)) +
           " kbit/s  " + std::to_string(status.framesDropped) + " lost  " +
           counted(status.reconnects, "reconnect");
}

double rounded(double number)
{
    return std::round(number * 100) / 100;
}

/// What it came to in the end.
void printSummary(const KxLiveStatus& status, double seconds, std::int64_t decoded, bool json,
                  Console& console)
{
    const Rates rates = ratesOf({}, status, seconds);
    if (json)
        printJson({{"width", status.width},
                   {"height", status.height},
                   {"seconds", rounded(seconds)},
                   {"frames", status.framesReceived},
                   {"decoded", decoded},
                   {"lost", status.framesDropped},
                   {"bytes", status.bytesReceived},
                   {"reconnects", status.reconnects},
                   {"frames_per_second", rounded(rates.frames)},
                   {"kbit_per_second", rounded(rates.kilobits)}},
                  console);
    else
        console.print(counted(status.framesReceived, "frame") + " in " + decimal(seconds) + " seconds, " +
                      sizeText(static_cast<std::uint64_t>(status.bytesReceived)) + ", " +
                      std::to_string(status.framesDropped) + " lost, " +
                      counted(status.reconnects, "reconnect") + "\n");
}

/// Watches until the time is over, the person wants to end or it can not go on; the last status.
KxLiveStatus watch(const LiveView& view, const Pictures& pictures, double seconds, ProgressLine& display,
                   const Console& console)
{
    const SignalHold signals;
    const auto begin = Clock::now();
    KxLiveStatus before{};
    double shownAt = 0;
    while (true) {
        const double left = seconds - secondsSince(begin);
        const bool wanted = signals.pause(secondsAtMost(left, 1));
        const KxLiveStatus status = view.status();
        const double now = secondsSince(begin);
        display.show(textOf(status, ratesOf(before, status, std::max(now - shownAt, 0.001))));
        pictures.requireWritten();
        if (wanted || left <= 1 || status.refused != 0 || console.isBroken())
            return status;
        before = status;
        shownAt = now;
    }
}

ExitCode live(const Options& options, const CommandLine& line, Console& console)
{
    Pictures pictures(options.frames);
    const Session session(line.target);
    ProgressLine display(line.json, console);
    const LiveView view(session, line.target, options.stream, Pictures::take, &pictures);
    const auto begin = Clock::now();
    const KxLiveStatus status = watch(view, pictures, options.seconds, display, console);
    display.finish();
    printSummary(status, secondsSince(begin), pictures.count(), line.json, console);
    view.requireSending(status);
    if (status.width == 0)
        throw view.nothingCame();
    return ExitCode::Ok;
}

} // namespace

void addLive(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb =
        kxcam.add("live", "Watch how a live stream does, and save its pictures", footer).does(live, options);
    addStreamOption(verb, &options->stream);
    addSecondsOption(verb, &options->seconds);
    verb.option("--frames", "DIR", &options->frames, "Save the pictures in this directory");
}

} // namespace kxcam

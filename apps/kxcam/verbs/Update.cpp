// kxcam update: has the camera look for newer firmware, fetch it and install it, and follows that.
#include <chrono>
#include <limits>
#include <thread>

#include <nlohmann/json.hpp>

#include <KxIpcSDK/KxSystem.h>

#include "Carriable.h"
#include "Json.h"
#include "Progress.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
Examples:
  kxcam --host 192.168.1.20 update check
  kxcam --host 192.168.1.20 update start 2.1.0
  kxcam --host 192.168.1.20 update watch

Do not switch the camera off while it updates.

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

constexpr int done = 100;      // per cent
constexpr int mostPolls = 120; // without any progress
constexpr int notTold = std::numeric_limits<int>::min();

struct Options
{
    std::string text;
    int interval = 1000; // milliseconds
};

/// What follows the headers of a raw reply.
std::string bodyOf(const std::string& reply)
{
    constexpr std::string_view blankLine = "\r\n\r\n";
    const std::size_t end = reply.find(blankLine);
    std::string body = end == std::string::npos ? reply : reply.substr(end + blankLine.size());
    body.erase(body.find_last_not_of("\r\n") + 1);
    return body;
}

ExitCode check(const CommandLine& line, Console& console)
{
    const Session session(line.target);
    char reply[4096];
    if (Kx_Ipc_GetUpdateInfo(session.userId(), reply, sizeof reply) != 0)
        throw sdkFailure("the update check of " + line.target.address());
    const std::string answer = bodyOf(reply);
    if (line.json)
        printJson({{"answer", answer}}, console);
    else
        console.print(printable(answer) + "\n");
    return ExitCode::Ok;
}

ExitCode start(const Options& options, const CommandLine& line, Console& console)
{
    if (const auto why = obstacle(options.text))
        throw Failure(ExitCode::Usage, "the text '" + printable(options.text) + "' " + *why);
    const Session session(line.target);
    if (Kx_Ipc_UpdateOnline(session.userId(), options.text.c_str()) != 0)
        throw sdkFailure("starting the update of " + line.target.address());
    console.print(line.json ? "{\"started\": true}\n"
                            : "started; follow it with: " + line.target.commandLine() + " update watch\n");
    return ExitCode::Ok;
}

/// A bar that grows on a terminal; elsewhere a line for each step.
std::string textOf(int progress, const ProgressLine& line)
{
    const std::string percent = std::to_string(progress) + " %";
    return line.redraws() ? barOf(static_cast<unsigned>(progress), done) + " " + percent : percent;
}

/// The SDK gives error codes and progress in the same place. Progress never falls.
int progressAfter(int before, long userId, const std::string& camera)
{
    int progress = notTold;
    if (Kx_Ipc_GetUpdateOnlineProgress(userId, &progress) != 0)
        throw sdkFailure("following the update of " + camera);
    if (progress == notTold)
        throw Failure(ExitCode::Refused, camera + " tells no progress: no update is running");
    if (progress < before || progress < 0 || progress > done)
        throw Failure(ExitCode::Refused,
                      "the update of " + camera + " failed: it reports error " + std::to_string(progress));
    return progress;
}

ExitCode watch(const Options& options, const CommandLine& line, Console& console)
{
    const Session session(line.target);
    ProgressLine display(line.json, console);
    int shown = -1;
    for (int polls = 0; shown != done; ++polls) {
        const int progress = progressAfter(shown, session.userId(), line.target.address());
        if (progress != shown) {
            display.show(textOf(progress, display));
            shown = progress;
            polls = 0;
        } else if (polls == mostPolls) {
            throw Failure(ExitCode::Refused, "the update of " + line.target.address() + " does not go on");
        }
        if (shown != done)
            std::this_thread::sleep_for(std::chrono::milliseconds(options.interval));
    }
    if (line.json)
        console.print("{\"progress\": 100}\n");
    return ExitCode::Ok;
}

} // namespace

void addUpdate(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb update = kxcam.add("update", "Update the camera's firmware online", footer);
    update.add("check", "Have the camera look for newer firmware, and show its answer").does(check);
    update.add("start", "Have the camera fetch and install firmware")
        .does(start, options)
        .argument("TEXT", &options->text, "What to install, in the camera's own words")
        .required();
    update.add("watch", "Follow an update until it is done")
        .does(watch, options)
        .option("--interval", "MS", &options->interval, "Milliseconds between two questions")
        .within(1, 60'000)
        .showDefault();
}

} // namespace kxcam
